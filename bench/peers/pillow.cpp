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

/// What the script prints; nothing when there is no Pillow. Debian's Python is asked, since it has Debian's Pillow.
std::string Ask(const std::string& arguments) {
    const std::string command = "/usr/bin/python3 '" OMBRIX_BENCH_PILLOW "' " + arguments + " 2> /dev/null";
    const std::unique_ptr<std::FILE, Close> pipe(popen(command.c_str(), "r"));
    std::string answer;
    char part[256];
    while (pipe && std::fgets(part, sizeof part, pipe.get())) answer += part;
    return answer;
}

std::set<std::string> ListedRows() {
    std::istringstream answer(Ask("--list"));
    std::set<std::string> rows;
    for (std::string line; std::getline(answer, line);) rows.insert(line);
    return rows;
}

}  // namespace

double PillowRatio(const RowName& row, Size size) {
    static const std::set<std::string> listed = ListedRows();
    if (!listed.contains(row.group + '/' + row.work)) return 0;
    std::ostringstream arguments;
    arguments << '\'' << row.group << "' '" << row.work << "' " << size.width << ' ' << size.height;
    double ratio = 0;
    std::istringstream(Ask(arguments.str())) >> ratio;
    return ratio;
}

}  // namespace ombrix::bench
