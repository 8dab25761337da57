// What messages are made of.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"
#include "text/shell_words.h"
#include "text/suggestions.h"

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

}  // namespace
}  // namespace ombrix::text
