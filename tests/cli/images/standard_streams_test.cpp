// Images from standard input and to standard output.

#include <fcntl.h>
#include <unistd.h>

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;

class StandardStreamsTest : public CommandTest {
  protected:
    StandardStreamsTest() { WriteColour("in.png", {100, 150, 200}); }

    /// With a file as standard input.
    Outcome From(const std::string& name, const std::vector<std::string>& words) const {
        const std::string file = Path(name).string();
        return Ombrix(words, [file] {
            const int opened = open(file.c_str(), O_RDONLY);
            if (opened < 0 || dup2(opened, STDIN_FILENO) < 0) _exit(126);
        });
    }
};

TEST_F(StandardStreamsTest, ADashStandsForThem) {
    const Outcome run = From("in.png", {"apply", "invert", "-", "-", "--format", "tif"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    Write("out.tif", run.out);
    EXPECT_STREQ(Read("out.tif").get_string("vips-loader"), "tiffload");
    EXPECT_EQ(PixelOf("out.tif"), (Pixel{155, 105, 55, 255}));

    EXPECT_EQ(From("in.png", {"invert", "-", "out.png"}).status, 0);
    EXPECT_EQ(PixelOf("out.png"), (Pixel{155, 105, 55, 255}));
    // As a mask and as an argument.
    EXPECT_EQ(From("in.png", {"apply", "invert", "--mask", "-", "in.png", "masked.png"}).status, 0);
    Write("call.jpg",
          From("in.png", {"call", "InvertEffect.Apply", "source=-", "-", "--format", ".JPG", "--quality", "100"}).out);
    EXPECT_THAT(PixelOf("call.jpg"), IsNear(Pixel{155, 105, 55, 255}, 2));
    // A file without a suffix.
    Expect({"apply", "invert", "in.png", "plain", "--format", "png"});
    EXPECT_EQ(PixelOf("plain"), (Pixel{155, 105, 55, 255}));
}

TEST_F(StandardStreamsTest, MistakesLeaveStandardOutputEmpty) {
    Write("empty.png", "");
    Write("text.png", "no image at all, but long enough");
    Write("cut.png", BytesOf(Path("in.png")).substr(0, 60));
    struct Case {
        std::string input;
        std::vector<std::string> words;
        int status;
        std::string message;
    };
    for (const Case& wrong : std::vector<Case>{
             {"in.png", {"apply", "invert", "-", "-"}, 2, "standard output has no suffix"},
             {"in.png", {"apply", "invert", "-", "-", "--format", "gfi"}, 2, "--format takes the suffix"},
             {"in.png", {"apply", "invert", "--in-place", "-"}, 2, "--in-place changes a file"},
             {"empty.png", {"apply", "invert", "-", "out.png"}, 1, "standard input is empty"},
             {"text.png", {"apply", "invert", "-", "-", "--format", "png"}, 1, "standard input is not an image"},
             {"cut.png", {"apply", "invert", "-", "-", "--format", "png"}, 1, "standard input is damaged"},
         }) {
        SCOPED_TRACE(wrong.message);
        const Outcome run = From(wrong.input, wrong.words);
        EXPECT_EQ(run.status, wrong.status);
        EXPECT_THAT(run.err, HasSubstr(wrong.message));
        EXPECT_EQ(run.out, "");
    }
    EXPECT_FALSE(fs::exists(Path("out.png")));
}

}  // namespace
}  // namespace ombrix::test
