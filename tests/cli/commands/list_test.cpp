// What can be learned without a picture: records, help, version.

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;

using ListTest = CommandTest;

TEST_F(ListTest, ListsEveryRecordAndTellsHelpAndVersion) {
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
