// What can be learned without a picture: records, help, version.

#include <nlohmann/json.hpp>

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

TEST_F(ListTest, JsonSaysWhatListSays) {
    const std::vector<std::string> plugins{"--plugin", OMBRIX_BUILD_DIR "/libposterize.so", "--plugin",
                                           OMBRIX_BUILD_DIR "/tests/odd_effects.so"};
    const auto list = [&](const std::vector<std::string>& words) {
        std::vector<std::string> all = plugins;
        all.insert(all.end(), words.begin(), words.end());
        const Outcome run = Ombrix(all);
        EXPECT_EQ(run.status, 0) << run.err;
        return run.out;
    };
    const std::string json = list({"list", "--json"});
    EXPECT_EQ(json.find('\n'), json.size() - 1) << "one line, where no terminal shows it";
    const auto catalogue = nlohmann::json::parse(json);
    ASSERT_EQ(catalogue["effects"].size(), 12u);
    EXPECT_EQ(catalogue["plugins"].size(), 3u);
    EXPECT_EQ(json, list({"list", "--json"}));
    // Without line breaks, which depend on the width.
    const auto onOneLine = [](const std::string& text) {
        std::string words;
        for (const char letter : text) {
            const bool isBlank = letter == ' ' || letter == '\n';
            if (!isBlank || (!words.empty() && words.back() != ' ')) words += isBlank ? ' ' : letter;
        }
        return words;
    };
    const std::string text = onOneLine(list({"list", "--all"}));
    for (const auto& effect : catalogue["effects"]) {
        const auto name = effect["name"].get<std::string>();
        EXPECT_THAT(text, HasSubstr("class " + name + ", derived"));
        EXPECT_EQ(nlohmann::json::parse(list({"list", effect["word"], "--json"}))["effects"][0], effect);
        for (const auto& property : effect["properties"]) {
            if (property["inherited"]) continue;
            std::string line = "property " + name + "." + property["name"].get<std::string>() + " as " +
                               property["type"].get<std::string>() + " ";
            std::vector<std::string> words;
            for (const auto& constant : property["constants"]) words.push_back(constant["word"]);
            if (!words.empty()) {
                for (const std::string& word : words) line += word + (&word == &words.back() ? "; " : ", ");
            } else if (const auto& range = property["range"]; range.is_object() && range["low"].is_number()) {
                line += range["low"].dump() + " to " + range["high"].dump() + "; ";
            } else if (range.is_object()) {
                line += "any number; ";
            }
            const bool takesNumbers = !words.empty() || property["range"].is_object();
            if (property["refusesDefault"]) line += takesNumbers ? "it has to be given" : "Has to be given";
            EXPECT_THAT(text, HasSubstr(line));
        }
    }
}

TEST_F(ListTest, JsonIsWholeOrNothing) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"list", "OmbrixError", "--json"}, {"list", "--json", "--all"}}) {
        const Outcome run = Ombrix(words);
        EXPECT_EQ(run.status, 2) << run.err;
        EXPECT_EQ(run.out, "");
        ExpectSentence(run);
    }
    const Outcome crashed = Ombrix({"list", "--json", "--plugin", OMBRIX_BUILD_DIR "/tests/hostile_effects.so"});
    EXPECT_EQ(crashed.status, 1);
    EXPECT_EQ(crashed.out, "");
    EXPECT_THAT(crashed.err, HasSubstr("HostileEffect"));
    ExpectSentence(crashed);
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
