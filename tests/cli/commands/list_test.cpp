// What can be learned without a picture: records, help, version.

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using testing::Not;

using ListTest = CommandTest;

TEST_F(ListTest, ListsEveryRecordAndWhatTryingTells) {
    const Outcome all = Ombrix({"list", "--all"});
    EXPECT_EQ(all.status, 0);
    for (const char* line :
         {"module OmbrixError\n", "  constant  OmbrixError.INVALID_MASK = 1\n",
          "class ColorFilterEffect, derived from MPImageFilter, implements IGraphicsEffect and IGraphicsEffectInPlace\n"
          "  Shifts red, green and blue",
          "  property  ColorFilterEffect.Red as Integer\n            -255 to 255; 0 unless given. Added to red.\n",
          "  property  SepiaEffect.SepiaValue as Integer\n            10 to 55; it has to be given.",
          "  property  MPImageFilter.ErrorCode as Integer, read-only\n",
          "  method    OmbrixUtilities.EnsurePictureCompatible(src as Picture) as Picture\n",
          "  constant  MPImageFilter.CPU_USE_MACHINE_CORE_COUNT = -1\n"}) {
        EXPECT_THAT(all.out, HasSubstr(line));
    }
    const std::string few = Ombrix({"list"}).out;
    EXPECT_THAT(few, HasSubstr("class ColorFilterEffect"));
    EXPECT_THAT(few, Not(HasSubstr("MPImageFilter.ErrorCode")));

    const std::string blend = Ombrix({"list", "blend"}).out;
    for (const char* text : {"normal, multiply, screen", "normal\n            unless given", "0 to 1; 1 unless given",
                             "crops and does not scale", "  constant  BlendEffect.MODE_ADD = 23\n"}) {
        EXPECT_THAT(blend, HasSubstr(text));
    }
    EXPECT_THAT(blend, Not(HasSubstr("MultiprocessingHint")));
    EXPECT_THAT(Ombrix({"list", "colorfilter", "--all"}).out,
                HasSubstr("ColorFilterEffect.MultiprocessingHint as Integer  (from MPImageFilter)\n"));
}

TEST_F(ListTest, TellsHelpAndVersion) {
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
