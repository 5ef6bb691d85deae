#include "core/text.h"

#include <gmock/gmock.h>

#include <limits>

namespace orlix {
namespace {

using ::testing::ElementsAre;

TEST(Text, everyUnicodeWhiteSpaceIsTrimmedAtBothEnds) {
    const std::vector<std::string> spaces{
        "\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\u0085", "\u00A0", "\u1680",
        "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
        "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};
    for (const std::string& space : spaces) {
        SCOPED_TRACE(::testing::PrintToString(space));
        EXPECT_EQ(trimmed(space + "x y" + space + space), "x y");
        EXPECT_EQ(trimmed(space), "");
    }
    std::string all;
    for (const std::string& space : spaces)
        all += space;
    EXPECT_EQ(trimmed(all + "e4" + all), "e4");
}

TEST(Text, whatOnlyLooksEmptyIsNotTrimmed) {
    // Zero-width space, Mongolian vowel separator, byte-order mark and a bare control character.
    for (const std::string text : {"\u200B", "\u180E", "\uFEFF", "\x1F"}) {
        EXPECT_EQ(trimmed(text), text);
    }
}

TEST(Text, onlyEndsAreTrimmed) {
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed(" a b "), "a b");
    EXPECT_EQ(trimmed("\u00E9 "), "\u00E9");
}

TEST(Text, charactersAreCodePoints) {
    struct Case {
        std::string text;
        std::size_t count;
    };
    for (const Case& c : {Case{"", 0}, Case{"abc", 3}, Case{"\u00E9", 1}, Case{"\u20AC", 1},
                          Case{"\U0001F600", 1}, Case{"a\u20ACb", 3}}) {
        EXPECT_EQ(characterCount(c.text), c.count) << c.text;
    }
}

TEST(Text, everyByteThatIsNotUtf8IsACharacterOfItsOwn) {
    EXPECT_EQ(characterCount("\xFF\xFE"), 2U);
    EXPECT_EQ(characterCount("\x80"), 1U);
    EXPECT_EQ(characterCount("\xE2\x82"), 2U);   // cut off
    EXPECT_EQ(characterCount("\xE2\x82z"), 3U);  // interrupted
    EXPECT_EQ(characterCount("\xF0\x9F\x98"), 3U);
}

TEST(Text, takingACharacterShortensTheRest) {
    std::string_view rest = "\u20ACx";
    EXPECT_EQ(takeCharacter(rest), "\u20AC");
    EXPECT_EQ(rest, "x");
    EXPECT_EQ(takeCharacter(rest), "x");
    EXPECT_TRUE(rest.empty());
}

TEST(Text, lowerCaseReachesEveryLetterThatBecomesAscii) {
    EXPECT_EQ(lowerCased("ABCXYZ"), "abcxyz");
    EXPECT_EQ(lowerCased("abc@[`{019"), "abc@[`{019");
    EXPECT_EQ(lowerCased("\u212A"), "k");  // the Kelvin sign
    EXPECT_EQ(lowerCased("\u0130\u00C9"), "\u0130\u00C9");
    EXPECT_EQ(lowerCased("\xFF"), "\xFF");
}

TEST(Text, splittingKeepsEmptyParts) {
    EXPECT_THAT(split("a b", ' '), ElementsAre("a", "b"));
    EXPECT_THAT(split("a  b", ' '), ElementsAre("a", "", "b"));
    EXPECT_THAT(split("/a/", '/'), ElementsAre("", "a", ""));
    EXPECT_THAT(split("", '/'), ElementsAre(""));
    EXPECT_THAT(split("a\tb", ' '), ElementsAre("a\tb"));
}

TEST(Text, integersAreAnOptionalSignAndDigits) {
    struct Case {
        std::string text;
        std::optional<std::int64_t> number;
    };
    const std::vector<Case> cases{
        {"0", 0},
        {"42", 42},
        {"+7", 7},
        {"-7", -7},
        {"-0", 0},
        {"007", 7},
        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
        {"+9223372036854775807", std::numeric_limits<std::int64_t>::max()},
        {"9223372036854775808", std::nullopt},
        {"-9223372036854775809", std::nullopt},
        {"99999999999999999999999", std::nullopt},
        {"", std::nullopt},
        {"+", std::nullopt},
        {"-", std::nullopt},
        {"+-5", std::nullopt},
        {"-+5", std::nullopt},
        {"++5", std::nullopt},
        {"--5", std::nullopt},
        {" 5", std::nullopt},
        {"5 ", std::nullopt},
        {"1.0", std::nullopt},
        {"1,000", std::nullopt},
        {"1e3", std::nullopt},
        {"0x10", std::nullopt},
        {"12a", std::nullopt},
        {"\u0665", std::nullopt},  // an Arabic-Indic digit
        {std::string("5\0", 2), std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(integerFromText(c.text), c.number) << '"' << c.text << '"';
    }
}

}  // namespace
}  // namespace orlix
