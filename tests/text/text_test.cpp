// What messages are made of.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"
#include "text/printable.h"
#include "text/shell_words.h"
#include "text/suggestions.h"
#include "text/wrapping.h"

namespace ombrix::text {
namespace {

TEST(Text, MakesNamesListsAndSentences) {
    EXPECT_TRUE(IsName("_Red2"));
    for (const char* wrong : {"", "2Red", "Red Green", "R\xc3\xb6t"}) EXPECT_FALSE(IsName(wrong)) << wrong;
    EXPECT_TRUE(SameName("ErrorCode", "errorCODE"));
    EXPECT_FALSE(SameName("Red", "Re"));
    EXPECT_EQ(WithArticle("Item"), "an Item");
    EXPECT_EQ(Listed({}), "");
    EXPECT_EQ(Listed({"a"}), "a");
    EXPECT_EQ(Listed({"a", "b", "c"}), "a, b and c");
    EXPECT_EQ(OnOneLine("  bad\r\n\tfile. \n"), "bad file");
    EXPECT_EQ(Suggestion("Reed", {"Green", "Red"}), "; did you mean \"Red\"?");
    EXPECT_EQ(Suggestion("x", {"Green", "Red"}), "; there are: Green, Red");
    EXPECT_EQ(Suggestion("x", {}), "; there are none");
    EXPECT_EQ(NearestNames("lihgten", {"DARKEN", "LIGHT", "LIGHTEN"}, 2), std::vector<std::string>({"LIGHTEN"}));
    EXPECT_EQ(NearestNames("lighte", {"LIGHT", "DARKEN", "LIGHTEN", "LIGHTER"}, 2),
              std::vector<std::string>({"LIGHT", "LIGHTEN"}));
    EXPECT_EQ(NearestName("sepai", {"blend", "sepia"}), "sepia");
    EXPECT_EQ(CommonBeginning({"MODE_HUE", "MODE_HARD", "mode_HUGE"}), "MODE_");
    EXPECT_EQ(CommonBeginning({"NTSC_PAL", "ITU_R"}), "");
    EXPECT_EQ(CommonBeginning({"CPU_ALL"}), "");
    EXPECT_EQ(Shown(0.1), "0.1");
    EXPECT_EQ(Shown(2024), "2024");
}

TEST(Text, ReadsWholeNumbersOnly) {
    EXPECT_EQ(ParseNumber<std::int64_t>("+7"), 7);
    EXPECT_EQ(ParseNumber<std::int64_t>("-9223372036854775808"), INT64_MIN);
    EXPECT_EQ(ParseNumber<double>("-.5"), -0.5);
    for (const char* wrong : {"", "+", "+-7", "7 ", " 7", "7x", "0x7", "9223372036854775808"}) {
        EXPECT_EQ(ParseNumber<std::int64_t>(wrong), std::nullopt) << wrong;
    }
}

TEST(Text, QuotesWordsForShells) {
    const struct {
        std::string word, quoted;
    } cases[] = {
        {"photo-1.jpg", "photo-1.jpg"},
        {"", "''"},
        {"$HOME", "'$HOME'"},
        {"it's", "'it'\\''s'"},
        {"a\nb'", "$'a\\x0ab\\x27'"},
        {"gr\xc3\xbc\xc3\x9f", "'gr\xc3\xbc\xc3\x9f'"},
        {"\xe2\x82\xac\xf0\x9f\x98\x80", "'\xe2\x82\xac\xf0\x9f\x98\x80'"},
        // Not UTF-8: a single byte of Latin-1, a cut sequence, an overlong slash, a surrogate, beyond U+10FFFF.
        {"gr\xfc", "$'gr\\xfc'"},
        {"\xe2\x82", "$'\\xe2\\x82'"},
        {"\xc0\xaf", "$'\\xc0\\xaf'"},
        {"\xe0\x80\xaf", "$'\\xe0\\x80\\xaf'"},
        {"\xed\xa0\x80", "$'\\xed\\xa0\\x80'"},
        {"\xf4\x90\x80\x80", "$'\\xf4\\x90\\x80\\x80'"},
    };
    for (const auto& [word, quoted] : cases) EXPECT_EQ(ShellWord(word), quoted);
    EXPECT_EQ(ShellLine({"a b", "c"}), "'a b' c");
}

TEST(Text, KeepsControlCharactersFromTerminals) {
    EXPECT_EQ(Printable("gr\xc3\xbc\xc3\x9f \xe2\x82\xac.png"), "gr\xc3\xbc\xc3\x9f \xe2\x82\xac.png");
    for (const auto& [text, shown] : std::vector<std::pair<std::string, std::string>>{
             {"\x1b[31m", "\\x1b[31m"},
             {"a\rb\nc", "a\\x0db\\x0ac"},
             {"\x7f", "\\x7f"},
             {"\xc2\x9b", "\\xc2\\x9b"},           // a control sequence in one character
             {"\xe2\x80\xae", "\\xe2\\x80\\xae"},  // from right to left
             {"\xe2\x81\xa6", "\\xe2\\x81\\xa6"},
             {"\x9b", "\\x9b"},  // not UTF-8
         }) {
        EXPECT_EQ(Printable(text), shown);
    }
    EXPECT_EQ(Printable(std::string(1, '\0')), "\\x00");
}

TEST(Text, WrapsAtWords) {
    EXPECT_EQ(Wrapped("one two three", 7), "one two\nthree");
    EXPECT_EQ(Wrapped("  one  two three", 10, 4), "  one  two\n    three");
    EXPECT_EQ(Wrapped("\xc3\xbc\xc3\xbc\xc3\xbc \xc3\xbc\xc3\xbc", 6), "\xc3\xbc\xc3\xbc\xc3\xbc \xc3\xbc\xc3\xbc");
    EXPECT_EQ(Wrapped("a unbreakable b", 5), "a\nunbreakable\nb");
    EXPECT_EQ(WrappedParagraphs("one\ntwo three\n\n  ombrix apply a b\n  x y", 14),
              "one two three\n\n  ombrix \\\n    apply a b\n  x y");
    // Placeholders stay whole, and are not to be copied.
    EXPECT_EQ(WrappedParagraphs("  ombrix a [b c] [d]", 16), "  ombrix a [b c]\n    [d]");
    EXPECT_EQ(WrappedParagraphs("  ombrix a [b c] [d]", 15), "  ombrix a\n    [b c] [d]");
}

}  // namespace
}  // namespace ombrix::text
