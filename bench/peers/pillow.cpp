#include <cstdio>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "bench/peers/peers.h"

namespace ombrix::bench {
namespace {

struct Close {
    void operator()(std::FILE* pipe) const { pclose(pipe); }
};

/// What the script prints; nothing without Pillow. Debian's Python is asked, since it has Debian's Pillow.
std::string Ask(const std::string& arguments) {
    const std::string command = "/usr/bin/python3 '" OMBRIX_BENCH_PILLOW "' " + arguments + " 2> /dev/null";
    const std::unique_ptr<std::FILE, Close> pipe(popen(command.c_str(), "r"));
    std::string answer;
    char part[256];
    while (pipe && std::fgets(part, sizeof part, pipe.get())) answer += part;
    return answer;
}

/// Like "blend/multiply".
std::set<std::string> Listed() {
    std::istringstream answer(Ask("--list"));
    std::set<std::string> listed;
    for (std::string line; std::getline(answer, line);) listed.insert(line);
    return listed;
}

}  // namespace

double PillowSeconds(const LineName& line, Size size) {
    static const std::set<std::string> listed = Listed();
    if (!listed.contains(line.table + '/' + line.measured)) return 0;
    std::ostringstream arguments;
    arguments << '\'' << line.table << "' '" << line.measured << "' " << size.width << ' ' << size.height;
    double seconds = 0;
    std::istringstream(Ask(arguments.str())) >> seconds;
    return seconds;
}

}  // namespace ombrix::bench
