// Standard output, and the progress line.

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;

using ConsoleTest = CommandTest;

TEST_F(ConsoleTest, StandardOutputThatCannotBeWrittenIsAFailure) {
    const Outcome run = Ombrix({"list"}, [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("standard output"));
}

TEST_F(ConsoleTest, AProgressLineShowsOnATerminalAndIsWipedOut) {
    WriteColour("large.ppm", {100, 150, 200}, 4000, 2500);
    const auto inverts = [](int steps) {
        std::vector<std::string> words = {"apply", "invert"};
        for (int i = 1; i < steps; ++i) words.insert(words.end(), {"--then", "invert"});
        words.insert(words.end(), {"--cores", "1", "large.ppm", "out.ppm", "--force"});
        return words;
    };
    const auto onTerminal = [this](const std::vector<std::string>& line) {
        const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
        EXPECT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
        const std::string name = ptsname(terminal);
        const int kept = open(name.c_str(), O_RDWR | O_NOCTTY);  // keeps the output readable when the child has ended
        const Outcome run = Ombrix(line, [&name] { dup2(open(name.c_str(), O_RDWR | O_NOCTTY), STDERR_FILENO); });
        EXPECT_EQ(run.status, 0);
        std::string shown;
        std::array<char, 4096> buffer;
        pollfd ready{terminal, POLLIN, 0};
        while (poll(&ready, 1, 100) > 0) {
            const ssize_t count = read(terminal, buffer.data(), buffer.size());
            if (count <= 0) break;
            shown.append(buffer.data(), static_cast<std::size_t>(count));
        }
        close(kept);
        close(terminal);
        return shown;
    };
    // The bar shows after half a second of work, which takes more steps the faster the machine is.
    std::string shown;
    std::vector<std::string> words;
    for (int steps = 50; shown.find(" %") == std::string::npos && steps <= 12800; steps *= 2) {
        words = inverts(steps);
        shown = onTerminal(words);
    }
    EXPECT_THAT(shown, HasSubstr("InvertEffect and "));
    EXPECT_THAT(shown, HasSubstr(" %"));
    EXPECT_THAT(shown, testing::EndsWith("\r\x1b[K"));

    words.push_back("--quiet");
    EXPECT_EQ(onTerminal(words), "");
    words.pop_back();
    EXPECT_EQ(Ombrix(words).err, "");  // not a terminal
}

}  // namespace
}  // namespace ombrix::test
