// Effects as subcommands, and values without names.

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class EffectsTest : public CommandTest {
  protected:
    EffectsTest() {
        WriteColour("in.png", {100, 150, 200}, 40, 30);
        WriteColour("fill.png", {10, 240, 30}, 50, 40);
    }

    /// Both command lines, which lack the output, make the same file.
    void ExpectSame(std::vector<std::string> spoken, std::vector<std::string> spelled) const {
        SCOPED_TRACE(testing::PrintToString(spoken));
        spoken.insert(spoken.end(), {"in.png", "spoken.png", "--force"});
        spelled.insert(spelled.end(), {"in.png", "spelled.png", "--force"});
        Expect(spoken);
        Expect(spelled);
        EXPECT_EQ(BytesOf(Path("spoken.png")), BytesOf(Path("spelled.png")));
        EXPECT_NE(PixelOf("spoken.png", 9, 9), PixelOf("in.png", 9, 9));
    }
};

TEST_F(EffectsTest, AreSubcommandsThatTakeValuesInOrder) {
    ExpectSame({"sepia", "30"}, {"apply", "sepia", "SepiaValue=30"});
    ExpectSame({"SepiaEffect", "30"}, {"apply", "sepia", "SepiaValue=30"});
    ExpectSame({"apply", "SEPIA", "30"}, {"apply", "sepia", "SepiaValue=30"});
    ExpectSame({"brightness", "-10"}, {"apply", "brightness", "BrightnessValue=-10"});
    ExpectSame({"invert"}, {"apply", "invert"});
    ExpectSame({"grayscale", "ntsc_pal"}, {"apply", "grayscale", "GrayscaleType=0"});
    ExpectSame({"colorfilter", "1", "-2", "3"}, {"apply", "colorfilter", "Red=1", "Green=-2", "Blue=3"});
    // What has a name already is skipped.
    ExpectSame({"colorfilter", "Green=-2", "1", "3"}, {"apply", "colorfilter", "Red=1", "Green=-2", "Blue=3"});
    ExpectSame({"blend", "overlay", "fill.png", "60%", "FillMask=", "Location=-20,3"},
               {"apply", "blend", "BlendMode=MODE_OVERLAY", "FillPicture=fill.png", "Opacity=0.6", "Location=-20,3"});
    ExpectSame({"blend", "fill_picture=fill.png", "mode=screen", "50%"},
               {"apply", "blend", "BlendMode=MODE_SCREEN", "FillPicture=fill.png", "Opacity=0.5"});
    ExpectSame({"blend", "color-dodge", "fill.png"}, {"apply", "blend", "BlendMode=6", "FillPicture=fill.png"});
    ExpectSame({"invert", "--mask", "fill.png", "--then", "sepia", "20"},
               {"apply", "invert", "--mask", "fill.png", "--then", "sepia", "SepiaValue=20"});

    Expect({"colorfilter", "5", "--in-place", "in.png"});
    EXPECT_EQ(PixelOf("in.png"), (Pixel{105, 150, 200, 255}));
}

TEST_F(EffectsTest, OfOtherPluginsAreSubcommandsToo) {
    const std::string plugin = OMBRIX_BUILD_DIR "/libposterize.so", odd = OMBRIX_BUILD_DIR "/tests/odd_effects.so";
    ExpectSame({"posterize", "2", "--plugin", plugin}, {"--plugin=" + plugin, "apply", "posterize", "Levels=2"});
    // The only Apply of this one takes nothing but the source.
    ExpectSame({"--plugin", odd, "narrow", "40", "reversed", "yes"},
               {"--plugin", odd, "apply", "narrow", "Strength=40", "Kind=3", "Coarse=true"});
    EXPECT_THAT(Ombrix({"--plugin", odd, "--help"}).out, HasSubstr("\n  needy "));
    EXPECT_EQ(Ombrix({"posterize", "2", "in.png", "out.png"}).status, 2);
}

TEST_F(EffectsTest, HelpIsOfTheSubcommandAndFitsTheTerminal) {
    const std::string blend = Ombrix({"blend", "--help"}).out;
    EXPECT_THAT(blend, HasSubstr("ombrix blend [BlendMode] [FillPicture] [Opacity] [FillMask] [Location] [Size]"));
    EXPECT_THAT(blend, HasSubstr("overlay"));
    EXPECT_THAT(blend, HasSubstr("Opacity               0 to 1; 1 unless given."));
    EXPECT_THAT(blend, Not(HasSubstr("--in-place")));
    EXPECT_THAT(blend, Not(HasSubstr("\n\n\n")));
    EXPECT_THAT(Ombrix({"sepia", "--help"}).out,
                AllOf(HasSubstr("--in-place"), HasSubstr("SepiaValue            10 to 55; it has to be given.")));
    // With the plug-in missing, help is still there.
    EXPECT_THAT(Ombrix({"--plugin", "none.so", "--help"}).out, HasSubstr("Usage:"));

    for (const std::size_t columns : {20, 60, 90, 120, 300}) {
        for (const char* command : {"apply", "call", "list", "gallery", "blend"}) {
            const std::string help =
                Ombrix({command, "--help"}, [columns] { setenv("COLUMNS", std::to_string(columns).c_str(), 1); }).out;
            std::size_t widest = 0;
            std::istringstream lines(help);
            for (std::string line; std::getline(lines, line);) widest = std::max(widest, line.size());
            EXPECT_LE(widest, std::clamp<std::size_t>(columns, 60, 120)) << help;
            EXPECT_GT(widest, std::clamp<std::size_t>(columns, 60, 120) / 2) << help;
        }
    }
}

TEST_F(EffectsTest, ValuesWithoutMeaningAreNoted) {
    struct Case {
        std::vector<std::string> words;
        std::string note;  ///< empty for none
    };
    for (const Case& given : std::vector<Case>{
             {{"blend", "99", "fill.png"},
              "BlendMode=99 is none of its constants; BlendEffect takes it for MODE_MULTIPLY"},
             {{"blend", "1", "fill.png"}, ""},
             {{"blend", "multiply", "fill.png", "60"},
              "Opacity=60 works as 1; it goes from 0 to 1, and 60 percent is 60%"},
             {{"blend", "multiply", "fill.png", "600%"}, "Opacity=600% works as 1; it goes from 0 to 1\n"},
             {{"blend", "multiply", "fill.png", "-1"}, "Opacity=-1 works as 0; it goes from 0 to 1\n"},
             {{"blend", "multiply", "fill.png", "nan"}, "Opacity=nan is not a number; it goes from 0 to 1\n"},
             {{"blend", "multiply", "fill.png", "100%"}, ""},
             {{"blend", "multiply", "fill.png", "0"}, ""},
             {{"blend", "multiply", "fill.png", "Location=40,0"}, "nothing of fill.png lies in the picture, 40x30"},
             {{"blend", "multiply", "fill.png", "Location=39,29"}, ""},
             {{"blend", "multiply", "fill.png", "Size=0,3"}, "nothing of fill.png lies in the picture, 40x30"},
             {{"blend", "multiply", "fill.png", "Size=-5,3"}, "Size=-5,3 works as 50,3"},
             {{"blend", "multiply", "fill.png", "Size=3,99"}, ""},
             {{"blend", "multiply", "fill.png", "Size=3,3"}, ""},
             {{"brightness"}, "BrightnessEffect changes nothing without a value for BrightnessValue"},
             {{"colorfilter"}, "changes nothing without a value for Red, Green and Blue"},
             {{"brightness", "0"}, ""},
             {{"grayscale"}, ""},
             {{"invert"}, ""}}) {
        SCOPED_TRACE(testing::PrintToString(given.words));
        std::vector<std::string> words = given.words;
        words.insert(words.end(), {"in.png", "out.png", "--force"});
        const Outcome run = Ombrix(words);
        EXPECT_EQ(run.status, 0);
        if (given.note.empty()) {
            EXPECT_EQ(run.err, "");
        } else {
            EXPECT_THAT(run.err, HasSubstr("ombrix: note: "));
            EXPECT_THAT(run.err, HasSubstr(given.note));
        }
    }
}

TEST_F(EffectsTest, FileNamesCannotCommandTerminals) {
    const std::string name = "a\x1b[31m\x9b.png";
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"invert", name, "out.png"},
                                               {"invert", "in.png", name + "/out.png"},
                                               {name, "in.png", "out.png"},
                                               {"sepia", name, "in.png", "out.png"},
                                               {"invert", "in.png", "out.png", "--" + name}}) {
        const Outcome run = Ombrix(words);
        EXPECT_NE(run.status, 0);
        EXPECT_THAT(run.err, HasSubstr("\\x1b[31m\\x9b"));
        EXPECT_THAT(run.err, Not(HasSubstr("\x1b")));
    }
}

}  // namespace
}  // namespace ombrix::test
