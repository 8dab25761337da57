// What happens to files when all goes well, and when something or someone steps in.

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using vips::VImage;

class OutputTest : public CommandTest {
  protected:
    OutputTest() { WriteColour("in.png", {100, 150, 200}); }

    /// A picture that takes a while to compress.
    void WriteNoise(const std::string& name, int width, int height) const {
        VImage::gaussnoise(width, height, VImage::option()->set("mean", 128)->set("sigma", 50))
            .cast(VIPS_FORMAT_UCHAR)
            .write_to_file(Path(name).c_str());
    }

    mode_t ModeOf(const std::string& name) const {
        struct stat status = {};
        EXPECT_EQ(stat(Path(name).c_str(), &status), 0);
        return status.st_mode & 0777;
    }

    /// Waits until the folder has one file more than `count`: the unfinished one.
    bool AwaitUnfinished(std::size_t count) const {
        for (int tries = 0; tries < 3000; ++tries) {
            const auto files = std::distance(fs::directory_iterator(Path("")), fs::directory_iterator());
            if (static_cast<std::size_t>(files) > count) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return false;
    }
};

TEST_F(OutputTest, ForceReplacesAFileAndKeepsItsPermissionsAndLinks) {
    WriteColour("old.png", {1, 2, 3});
    fs::permissions(Path("old.png"), fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("old.png", Path("link.png"));
    Expect({"apply", "invert", "in.png", "link.png", "--force"});
    EXPECT_EQ(PixelOf("old.png"), (Pixel{155, 105, 55, 255}));
    EXPECT_TRUE(fs::is_symlink(Path("link.png")));
    EXPECT_EQ(ModeOf("old.png"), 0600u);

    Finish(Start({"apply", "invert", "in.png", "new.png"}, [] { umask(027); }));
    EXPECT_EQ(ModeOf("new.png"), 0640u);
    EXPECT_EQ(Contents().size(), 4u);
}

TEST_F(OutputTest, InPlaceChangesTheFileItself) {
    fs::create_symlink("in.png", Path("link.png"));
    Expect({"apply", "invert", "--in-place", "link.png"});
    EXPECT_EQ(PixelOf("in.png"), (Pixel{155, 105, 55, 255}));
    EXPECT_TRUE(fs::is_symlink(Path("link.png")));
    EXPECT_EQ(Contents().size(), 2u);
}

TEST_F(OutputTest, AFullDiskLeavesNothingBehind) {
    WriteNoise("noise.png", 400, 400);
    const auto before = Contents();
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"apply", "invert", "noise.png", "out.png"},
             {"apply", "invert", "noise.png", "out.jpg"},
             {"apply", "invert", "noise.png", "out.tif"},
             {"apply", "invert", "noise.png", "out.webp"},
             {"apply", "invert", "noise.png", "out.ppm"},
             {"apply", "invert", "--in-place", "noise.png"},
             {"apply", "invert", "noise.png", "in.png", "--force"},
         }) {
        SCOPED_TRACE(testing::PrintToString(words));
        // A limit on the size of files stands in for the end of the disk.
        const Outcome run = Ombrix(words, [] {
            const rlimit limit{20'000, 20'000};
            setrlimit(RLIMIT_FSIZE, &limit);
        });
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.err, HasSubstr(words.back() == "--force" ? "in.png" : words.back()));
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_TRUE(Contents() == before);
    }
}

TEST_F(OutputTest, InterruptsLeaveNothingBehind) {
    WriteNoise("large.ppm", 3000, 3000);
    WriteColour("out.png", {1, 2, 3});
    const auto before = Contents();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(signal);
        const pid_t child = Start({"apply", "invert", "large.ppm", "out.png", "--force"});
        ASSERT_TRUE(AwaitUnfinished(before.size()));
        kill(child, signal);
        EXPECT_EQ(Finish(child).status, -signal);
        EXPECT_TRUE(Contents() == before);
    }
}

TEST_F(OutputTest, StandardOutputThatCannotBeWrittenIsAFailure) {
    const Outcome run = Ombrix({"list"}, [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("standard output"));
}

TEST_F(OutputTest, AProgressLineShowsOnATerminalAndIsWipedOut) {
    WriteColour("large.ppm", {100, 150, 200}, 4000, 2500);
    // Enough to do for a line to be worth it, on any machine: half a second.
#if defined(OMBRIX_SANITIZED)
    constexpr int kSteps = 30;
#else
    constexpr int kSteps = 600;
#endif
    std::vector<std::string> words = {"apply", "invert"};
    for (int i = 0; i < kSteps; ++i) words.insert(words.end(), {"--then", "invert"});
    words.insert(words.end(), {"--cores", "1", "large.ppm", "out.ppm", "--force"});
    const auto onTerminal = [this](const std::vector<std::string>& line) {
        const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
        EXPECT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
        const std::string name = ptsname(terminal);
        const int kept = open(name.c_str(), O_RDWR | O_NOCTTY);  // what is written stays readable after the child's end
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
    const std::string shown = onTerminal(words);
    EXPECT_THAT(shown, HasSubstr("InvertEffect ["));
    EXPECT_THAT(shown, HasSubstr(" %"));
    EXPECT_THAT(shown, testing::EndsWith("\r\x1b[K"));

    words.push_back("--quiet");
    EXPECT_EQ(onTerminal(words), "");
    words.pop_back();
    EXPECT_EQ(Ombrix(words).err, "");                                     // not a terminal
    EXPECT_EQ(onTerminal({"apply", "invert", "in.png", "out.png"}), "");  // over before one could read it
}

TEST_F(OutputTest, ListsEveryRecordAndTellsHelpAndVersion) {
    const Outcome all = Ombrix({"list"});
    EXPECT_EQ(all.status, 0);
    for (const char* line : {"module OmbrixError\n", "  constant  OmbrixError.INVALID_MASK = 1\n",
                             "class ColorFilterEffect, derived from "
                             "MPImageFilter, implements IGraphicsEffect and IGraphicsEffectInPlace\n",
                             "  property  ColorFilterEffect.Red as Integer\n",
                             "  property  MPImageFilter.ErrorCode as Integer, read-only\n",
                             "  method    OmbrixUtilities.EnsurePictureCompatible(src as Picture) as Picture\n",
                             "  constant  MPImageFilter.CPU_USE_MACHINE_CORE_COUNT = -1\n"}) {
        EXPECT_THAT(all.out, HasSubstr(line));
    }
    EXPECT_THAT(Ombrix({"list", "colorfilter"}).out,
                HasSubstr("ColorFilterEffect.MultiprocessingHint as Integer  (from MPImageFilter)\n"));

    EXPECT_THAT(Ombrix({"--version"}).out, testing::MatchesRegex("ombrix [0-9.]+\n"));
    for (const char* command : {"", "apply", "call", "list", "gallery"}) {
        std::vector<std::string> words = {"--help"};
        if (*command) words.insert(words.begin(), command);
        const Outcome help = Ombrix(words);
        EXPECT_EQ(help.status, 0);
        const std::size_t examples = help.out.find("Examples:"), usage = help.out.find("Usage:");
        EXPECT_LT(examples, usage) << command;
        EXPECT_THAT(help.out, HasSubstr("--force")) << command;
    }
}

}  // namespace
}  // namespace ombrix::test
