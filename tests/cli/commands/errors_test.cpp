// Every mistake gets one sentence and the right exit status, and changes no file.

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;

constexpr int kFailed = 1;
constexpr int kWrongCommandLine = 2;

class ErrorsTest : public CommandTest {
  protected:
    ErrorsTest() {
        WriteColour("in.png", {100, 150, 200}, 40, 30);
        WriteColour("there.png", {1, 2, 3});
        WriteColour("smallmask.png", {0}, 40, 29);
        WriteColour("fill.png", {1, 2, 3}, 10, 10);
        Write("empty.png", "");
        Write("short.png", "RIFF\n");
        Write("text.png", "This is no image at all, whatever its name says.\n");
        for (const char* whole : {"whole.png", "whole.jpg", "whole.tif", "whole.webp", "whole.gif", "whole.ppm"}) {
            vips::VImage::gaussnoise(80, 80, vips::VImage::option()->set("mean", 128)->set("sigma", 50))
                .cast(VIPS_FORMAT_UCHAR)
                .write_to_file(Path(whole).c_str());
            const std::string bytes = BytesOf(Path(whole));
            Write("cut" + Path(whole).extension().string(), bytes.substr(0, bytes.size() * 2 / 3));
        }
        fs::create_symlink("in.png", Path("link.png"));
        fs::create_hard_link(Path("in.png"), Path("same.png"));
        fs::create_directory(Path("folder.png"));
    }

    void ExpectMistake(const std::vector<std::string>& words, int status, const std::vector<std::string>& parts) {
        SCOPED_TRACE(testing::PrintToString(words));
        const auto before = Contents();
        const Outcome run = Ombrix(words);
        EXPECT_EQ(run.status, status);
        EXPECT_EQ(run.out, "");
        ExpectSentence(run);
        for (const std::string& part : parts) EXPECT_THAT(run.err, HasSubstr(part));
        EXPECT_TRUE(Contents() == before);
    }
};

TEST_F(ErrorsTest, WrongCommandLines) {
    struct Case {
        std::vector<std::string> words;
        std::vector<std::string> parts;
    };
    for (const Case& wrong : std::vector<Case>{
             {{}, {"apply", "call", "list"}},
             {{"aply", "invert", "in.png", "out.png"}, {"\"aply\"", "did you mean \"apply\"?", "ombrix EFFECT"}},
             {{"xyzzy", "in.png", "out.png"}, {"\"xyzzy\"", "apply, call, list, gallery", "sepia"}},
             {{"sepai", "30", "in.png", "out.png"}, {"did you mean \"sepia\"?"}},
             {{"sepia", "30", "in.png"}, {"OUTPUT", "SepiaValue", "Usage:\n  ombrix sepia"}},
             {{"sepia", "in.png"}, {"sepia takes INPUT and OUTPUT", "given in.png", "ombrix sepia [SepiaValue]"}},
             {{"sepia", "30", "40", "in.png", "out.png"},
              {"one value, SepiaValue", "40 beyond it", "Usage:\n  ombrix sepia"}},
             {{"sepia", "thirty", "in.png", "out.png"}, {"SepiaEffect.SepiaValue", "whole number", "thirty"}},
             {{"sepia", "SepiaValue=30", "40", "in.png", "out.png"}, {"SepiaValue", "was given 40"}},
             {{"sepia", "30", "in.png", "--then", "invert", "out.png"}, {"INPUT and OUTPUT", "in.png before --then"}},
             {{"sepia", "30", "--then", "in.png", "out.png"}, {"the file in.png stands where the name of an effect"}},
             {{"apply", "in.png", "out.png"}, {"the file in.png stands where the name of an effect"}},
             {{"blend", "--mask", "in.png", "fill.png", "in.png", "out.png"}, {"BlendEffect has no mask"}},
             {{"sepia", "9", "none.png", "out.png"}, {"SepiaValue=9", "10 to 55"}},
             {{"call", "SepiaEffect.Apply", "source=none.png", "value=9", "out.png"}, {"value=9"}},
             {{"invert", "", "out.png"}, {"INPUT is empty"}},
             {{"invert", "in.png", ""}, {"OUTPUT is empty"}},
             {{"invert", "--mask", "", "in.png", "out.png"}, {"mask is empty"}},
             {{"call", "invert.Apply", "source=in.png", ""}, {"OUTPUT is empty"}},
             {{"gallery", "", "-o", "a.html"}, {"PICTURE is empty"}},
             {{"apply"}, {"name of an effect", "ombrix apply EFFECT"}},
             {{"apply", "Red=1", "in.png", "out.png"}, {"name of an effect"}},
             {{"apply", "sepai", "in.png", "out.png"}, {"\"sepai\"", "SepiaEffect"}},
             {{"apply", "ColourFilterEffect", "in.png", "out.png"}, {"ColorFilterEffect"}},
             {{"apply", "xyzzy", "in.png", "out.png"}, {"\"xyzzy\"", "SepiaEffect"}},
             {{"apply", "MPImageFilter", "in.png", "out.png"}, {"MPImageFilter", "not an effect"}},
             {{"apply", "invert", "--then", "sepai", "in.png", "out.png"}, {"\"sepai\""}},
             {{"apply", "colorfilter", "Rde=1", "in.png", "out.png"}, {"Rde", "Mask", "Red", "Green", "Blue"}},
             {{"apply", "colorfilter", "Red=much", "in.png", "out.png"},
              {"ColorFilterEffect.Red", "whole number", "much"}},
             {{"apply", "colorfilter", "Red=1.5", "in.png", "out.png"}, {"whole number", "1.5"}},
             {{"apply", "colorfilter", "Red=", "in.png", "out.png"}, {"whole number"}},
             {{"apply", "colorfilter", "Red=9223372036854775808", "in.png", "out.png"}, {"64 bits"}},
             {{"apply", "colorfilter", "Red=1", "red=2", "in.png", "out.png"}, {"twice"}},
             {{"apply", "colorfilter", "IgnoreAlpha=maybe", "in.png", "out.png"}, {"true or false", "maybe"}},
             {{"apply", "colorfilter", "ErrorCode=0", "in.png", "out.png"}, {"ErrorCode", "read only"}},
             {{"apply", "blend", "BlendMode=MODE_OVERLAI", "in.png", "out.png"}, {"MODE_OVERLAY"}},
             {{"apply", "blend", "BlendMode=lihgten", "in.png", "out.png"}, {"such as lighten"}},
             {{"apply", "blend", "BlendMode=xyzzy", "in.png", "out.png"}, {"one of normal, multiply", "xyzzy"}},
             {{"apply", "blend", "Opacity=x%", "in.png", "out.png"}, {"50%"}},
             {{"apply", "colorfilter", "Red=MODE_HUE", "in.png", "out.png"}, {"whole number"}},
             {{"apply", "colorfilter", "Red=CPU_USE_AUTOMATIC", "in.png", "out.png"}, {"whole number"}},
             {{"apply", "blend", "Location=3", "in.png", "out.png"}, {"x,y"}},
             {{"apply", "blend", "Opacity=half", "in.png", "out.png"}, {"number such as"}},
             {{"apply", "blend", "--mask", "in.png", "in.png", "out.png"}, {"BlendEffect has no mask", "FillMask"}},
             {{"apply", "blend", "FillPicture=fill.png", "--in-place", "in.png"}, {"BlendEffect cannot work in place"}},
             {{"apply", "invert", "in.png"}, {"INPUT and OUTPUT"}},
             {{"apply", "invert", "in.png", "out.png", "more.png"}, {"no values", "in.png", "end of the line"}},
             {{"apply", "invert", "--in-place", "in.png", "out.png"}, {"no values", "one with --in-place"}},
             {{"apply", "invert", "--in-place"}, {"--in-place takes one file"}},
             {{"apply", "invert", "in.png", "--then", "invert", "out.png"},
              {"INPUT and OUTPUT", "in.png before --then"}},
             {{"apply", "invert", "--mask"}, {"--mask"}},
             {{"apply", "invert", "in.png", "out.png", "--forse"}, {"--forse", "--force"}},
             {{"apply", "invert", "in.png", "out.xyz"}, {".xyz", ".png", ".jpg"}},
             {{"apply", "invert", "in.png", "out"}, {"no suffix", ".png"}},
             {{"apply", "invert", "in.png", "in.png"}, {"in.png", "--in-place"}},
             {{"apply", "invert", "in.png", "./link.png", "--force"}, {"link.png"}},
             {{"apply", "invert", "link.png", "same.png", "--force"}, {"same.png"}},
             {{"apply", "invert", "--mask", "there.png", "in.png", "there.png", "--force"}, {"there.png"}},
             {{"apply", "invert", "in.png", "out.jpg", "--quality", "0"}, {"1 to 100"}},
             {{"apply", "invert", "in.png", "out.jpg", "--quality", "best"}, {"1 to 100", "best"}},
             {{"apply", "invert", "in.png", "out.png", "--quality", "50"}, {".png", ".jpg"}},
             {{"apply", "invert", "in.png", "out.png", "--cores", "9"}, {"1 to 8", "auto", "all"}},
             {{"apply", "invert", "in.png", "out.png", "--max-pixels", "-1"}, {"--max-pixels", "from 1"}},
             {{"call", "ColorFilterEffect", "out.png"}, {"CLASS.METHOD"}},
             {{"call", "Colourfilter.Apply", "source=in.png", "out.png"}, {"\"Colourfilter\""}},
             {{"call", "colorfilter.Aply", "source=in.png", "out.png"}, {"\"Aply\"", "ApplyInPlace"}},
             {{"call", "colorfilter.Apply", "source=in.png", "red=4", "out.png"}, {"green as Integer"}},
             {{"call", "colorfilter.Apply", "sauce=in.png", "out.png"}, {"source as Picture"}},
             {{"call", "colorfilter.Apply", "source=in.png"}, {"name the file"}},
             {{"call", "colorfilter.ApplyInPlace", "source=in.png"}, {"name the file"}},
             {{"call", "colorfilter.Apply", "source=in.png", "in.png", "--force"}, {"in.png"}},
             {{"call", "OmbrixUtilities.EnsurePictureBits", "src=in.png", "out.png"}, {"depth"}},
             {{"call", "OmbrixUtilities.EnsurePictureBits", "src=in.png", "depth=x", "out.png"}, {"whole number"}},
             {{"call", "Item.Pick", "a=3", "--plugin", OMBRIX_BUILD_DIR "/tests/host_probe.so"},
              {"ambiguous", "a as Integer", "a as Double"}},
             {{"list", "Nothing"}, {"\"Nothing\"", "OmbrixError"}},
         }) {
        ExpectMistake(wrong.words, kWrongCommandLine, wrong.parts);
    }
}

TEST_F(ErrorsTest, ValuesThatEffectsRefuse) {
    struct Case {
        std::vector<std::string> words;
        std::vector<std::string> parts;
    };
    for (const Case& refused : std::vector<Case>{
             {{"apply", "colorfilter", "Red=256", "in.png", "out.png"},
              {"Red=256", "-255 to 255", "ILLEGAL_INPUT_PARAMETER"}},
             {{"apply", "colorfilter", "Red=4294967296", "in.png", "out.png"}, {"Red=4294967296"}},
             {{"apply", "colorfilter", "Red=256", "--in-place", "in.png"}, {"Red=256", "ILLEGAL_INPUT_PARAMETER"}},
             {{"apply", "invert", "--then", "sepia", "SepiaValue=9", "in.png", "out.png"},
              {"SepiaValue=9", "10 to 55"}},
             {{"apply", "sepia", "in.png", "out.png"}, {"SepiaValue=0", "10 to 55"}},
             {{"call", "brightness.Apply", "source=in.png", "value=300", "out.png"},
              {"value=300", "ILLEGAL_INPUT_PARAMETER"}},
             {{"apply", "blend", "in.png", "out.png"}, {"INVALID_SOURCE_IMAGE", "no FillPicture"}},
         }) {
        ExpectMistake(refused.words, kWrongCommandLine, refused.parts);
    }
}

TEST_F(ErrorsTest, WorkThatFails) {
    struct Case {
        std::vector<std::string> words;
        std::vector<std::string> parts;
    };
    for (const Case& failing : std::vector<Case>{
             {{"apply", "invert", "--mask", "smallmask.png", "in.png", "out.png"},
              {"smallmask.png is 40x29", "smaller than the picture, 40x30", "INVALID_MASK"}},
             {{"apply", "invert", "--mask", "smallmask.png", "--in-place", "in.png"}, {"40x29", "40x30"}},
             {{"apply", "invert", "none.png", "out.png"}, {"no file none.png"}},
             {{"apply", "invert", "--in-place", "none.png"}, {"no file none.png"}},
             {{"apply", "invert", "--mask", "none.png", "in.png", "out.png"}, {"no file none.png"}},
             {{"apply", "blend", "FillPicture=none.png", "in.png", "out.png"}, {"no file none.png"}},
             {{"call", "invert.Apply", "source=none.png", "out.png"}, {"no file none.png"}},
             {{"apply", "invert", "folder.png", "out.png"}, {"folder.png is a folder"}},
             {{"apply", "invert", "empty.png", "out.png"}, {"empty.png is empty"}},
             {{"apply", "invert", "short.png", "out.png"}, {"short.png is not an image"}},
             {{"apply", "invert", "text.png", "out.png"}, {"text.png is not an image"}},
             {{"apply", "invert", "in.png", "out.png", "--max-pixels", "1199"}, {"40x30", "1199", "--max-pixels"}},
             {{"apply", "invert", "--mask", "in.png", "there.png", "out.png", "--max-pixels", "400"},
              {"in.png", "40x30"}},
             {{"apply", "invert", "in.png", "nowhere/out.png"}, {"folder nowhere", "not there"}},
             {{"apply", "invert", "in.png", "there.png/out.png"}, {"there.png is not a folder"}},
             {{"apply", "invert", "in.png", "/proc/out.png"}, {"/proc"}},
             {{"apply", "invert", "in.png", "folder.png"}, {"folder.png is a folder"}},
             {{"apply", "invert", "in.png", "there.png"}, {"there.png exists", "--force"}},
             {{"call", "invert.Apply", "source=in.png", "there.png"}, {"there.png exists", "--force"}},
             {{"--plugin", "none.so", "list"}, {"no plug-in file none.so"}},
             {{"--plugin", "in.png", "apply", "invert", "in.png", "out.png"}, {"in.png", "plug-in"}},
             {{"--plugin", OMBRIX_BUILD_DIR "/libombrix_platform.so", "list"},
              {"libombrix_platform.so", "REALPluginMain"}},
         }) {
        ExpectMistake(failing.words, kFailed, failing.parts);
    }
}

TEST_F(ErrorsTest, FilesThatEndTooSoon) {
    for (const char* suffix : {".png", ".jpg", ".tif", ".webp", ".gif", ".ppm"}) {
        const std::string cut = std::string("cut") + suffix;
        ExpectMistake({"apply", "invert", cut, "out.png"}, kFailed, {cut, "damaged"});
        ExpectMistake({"apply", "invert", "--mask", cut, "there.png", "out.png"}, kFailed, {cut, "damaged"});
        ExpectMistake({"apply", "invert", "--in-place", cut}, kFailed, {cut, "damaged"});
    }
}

TEST_F(ErrorsTest, PluginsThatNobodyNamedAreBroken) {
    WriteColour("in.png", {1, 2, 3});
    Write("broken.so", "no shared object");
    const auto inEnvironment = [] { setenv("OMBRIX_PLUGINS", "broken.so:" OMBRIX_BUILD_DIR "/libposterize.so", 1); };
    // The work goes on without it, with the others.
    const Outcome run = Ombrix({"posterize", "2", "in.png", "out.png"}, inEnvironment);
    EXPECT_EQ(run.status, 0);
    ExpectSentence(run);
    EXPECT_THAT(run.err, HasSubstr("broken.so"));
    EXPECT_EQ(PixelOf("out.png"), (Pixel{0, 0, 0, 255}));
    EXPECT_EQ(Ombrix({"--plugin", "broken.so", "posterize", "2", "in.png", "out2.png"}, inEnvironment).status, kFailed);
    EXPECT_FALSE(fs::exists(Path("out2.png")));
}

TEST_F(ErrorsTest, TheStandardPluginIsMissing) {
    if (kEmulated) GTEST_SKIP() << "the system cannot start a copy of the command by itself";
    fs::create_directory(Path("alone"));
    const char* const files[] = {"ombrix", "libombrix_host.so.0", "libombrix_platform.so"};
    for (const char* file : files) {
        fs::copy_file(fs::path(OMBRIX_BUILD_DIR) / file, Path("alone") / file);
    }
    const std::string line = "cd '" + Path("alone").string() + "' && ./ombrix list > log 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), kFailed);
    EXPECT_THAT(BytesOf(Path("alone/log")), HasSubstr("libombrix.so"));
    // An installation keeps it in a library folder.
    fs::create_directories(Path("prefix/bin"));
    fs::create_directories(Path("prefix/lib/ombrix"));
    for (const char* file : files) {
        fs::rename(Path("alone") / file, Path(file == files[0] ? "prefix/bin" : "prefix/lib") / file);
    }
    fs::copy_file(OMBRIX_BUILD_DIR "/libombrix.so", Path("prefix/lib/ombrix/libombrix.so"));
    const std::string installed = "LD_LIBRARY_PATH='" + Path("prefix/lib").string() + "' '" +
                                  Path("prefix/bin/ombrix").string() + "' list InvertEffect > /dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(installed.c_str())), 0);
}

}  // namespace
}  // namespace ombrix::test
