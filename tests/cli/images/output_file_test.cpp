// What happens to files, on success and when something goes wrong.

#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using vips::VImage;

class OutputFileTest : public CommandTest {
  protected:
    OutputFileTest() { WriteColour("in.png", {100, 150, 200}); }

    /// Takes a while to compress.
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
};

TEST_F(OutputFileTest, ForceReplacesAFileAndKeepsItsPermissionsAndLinks) {
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

TEST_F(OutputFileTest, InPlaceChangesTheFileItself) {
    fs::create_symlink("in.png", Path("link.png"));
    Expect({"apply", "invert", "--in-place", "link.png"});
    EXPECT_EQ(PixelOf("in.png"), (Pixel{155, 105, 55, 255}));
    EXPECT_TRUE(fs::is_symlink(Path("link.png")));
    EXPECT_EQ(Contents().size(), 2u);
}

TEST_F(OutputFileTest, AFullDiskLeavesNothingBehind) {
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
        // Stands in for a full disk.
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

TEST_F(OutputFileTest, InterruptsLeaveNothingBehind) {
    WriteNoise("large.ppm", 3000, 3000);
    WriteColour("out.png", {1, 2, 3});
    const auto before = Contents();
    // From before the fork until well into the work.
    for (const int milliseconds : {1, 5, 10, 15, 20, 30, 40, 60, 100, 150}) {
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGKILL}) {
            SCOPED_TRACE(testing::Message() << signal << " after " << milliseconds << " ms");
            fs::create_directory(Path("temporary"));
            const pid_t child =
                Start({"apply", "invert", "large.ppm", "out.png", "--force"}, [] { setenv("TMPDIR", "temporary", 1); });
            std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
            kill(child, signal);
            EXPECT_EQ(Finish(child).status, -signal);
            // The worker of one that was killed ends by itself.
            for (int tries = 0; tries < 3000 && !fs::is_empty(Path("temporary")); ++tries) {
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
            fs::remove(Path("temporary"));
            EXPECT_TRUE(Contents() == before);
        }
    }
}

}  // namespace
}  // namespace ombrix::test
