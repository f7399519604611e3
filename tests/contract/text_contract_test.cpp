#include "tests/contract/platform_fixture.hpp"

namespace tallowmere::test {
namespace {

constexpr std::size_t kPlenty = 1000;

class TextContract : public ContractTest {};

#define SKIP_UNLESS_UTF8()                                                                                             \
    if (!fixture->narrowTextIsUtf8()) GTEST_SKIP() << "the narrow character set is the user's code page here"

TEST_P(TextContract, AsciiIsTheSameBothWays) {
    std::string ascii;
    for (char c = 1; c > 0; ++c) ascii += c;
    const std::u16string wide(ascii.begin(), ascii.end());
    EXPECT_EQ(platform.narrow(wide, kPlenty), ascii);
    EXPECT_EQ(platform.widen(ascii), wide);
}

TEST_P(TextContract, EmptyStaysEmpty) {
    EXPECT_EQ(platform.narrow(u"", kPlenty), "");
    EXPECT_EQ(platform.narrow(u"", 0), "");
    EXPECT_EQ(platform.widen(""), u"");
}

TEST_P(TextContract, NarrowTextIsCutAtTheLimit) {
    EXPECT_EQ(platform.narrow(u"abcdef", 3), "abc");
    EXPECT_EQ(platform.narrow(u"abcdef", 6), "abcdef");
    EXPECT_EQ(platform.narrow(u"abcdef", 7), "abcdef");
    EXPECT_EQ(platform.narrow(u"abcdef", 0), "");
}

TEST_P(TextContract, ALoneSurrogateHasNoNarrowForm) {
    EXPECT_EQ(platform.narrow(std::u16string{u'a', 0xD83D, u'b'}, kPlenty), "a?b");
    EXPECT_EQ(platform.narrow(std::u16string{u'a', 0xDC00, u'b'}, kPlenty), "a?b");
    EXPECT_EQ(platform.narrow(std::u16string{u'a', 0xD83D}, kPlenty), "a?");
}

TEST_P(TextContract, NarrowTextNeverExceedsTheLimit) {
    const std::u16string text = u"a\u00FC\u4E2D\U0001F6A2z";
    for (std::size_t limit = 0; limit < 16; ++limit) EXPECT_LE(platform.narrow(text, limit).size(), limit);
}

TEST_P(TextContract, CharactersOfEveryLengthSurviveBothWays) {
    SKIP_UNLESS_UTF8();
    const std::u16string wide = u"\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF";
    const std::string narrow = "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"
                               "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    EXPECT_EQ(platform.narrow(wide, kPlenty), narrow);
    EXPECT_EQ(platform.widen(narrow), wide);
}

TEST_P(TextContract, ACharacterIsNeverCutInTwo) {
    SKIP_UNLESS_UTF8();
    const std::string whole = "\xC3\xBC\xE4\xB8\xAD\xF0\x9F\x9A\xA2";
    const std::size_t kept[] = {0, 0, 2, 2, 2, 5, 5, 5, 5, 9};
    for (std::size_t limit = 0; limit < 10; ++limit)
        EXPECT_EQ(platform.narrow(u"\u00FC\u4E2D\U0001F6A2", limit), whole.substr(0, kept[limit]));
}

TEST_P(TextContract, AShorterCharacterDoesNotSlipInBehindACut) {
    SKIP_UNLESS_UTF8();
    EXPECT_EQ(platform.narrow(u"\u4E2Dab", 2), "");
}

TEST_P(TextContract, EachByteThatIsNoTextBecomesTheReplacementCharacter) {
    SKIP_UNLESS_UTF8();
    const std::pair<std::string, std::u16string> cases[] = {
        {"a\x80z", u"a\uFFFDz"},                           // a following byte without a lead
        {"a\xC3", u"a\uFFFD"},                             // cut at the end
        {"\xC3(", u"\uFFFD("},                             // cut by another character
        {"\xE4\xB8z", u"\uFFFD\uFFFDz"},                   // the same, later
        {"\xC0\x80", u"\uFFFD\uFFFD"},                     // too long for its value
        {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},           //
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},           // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"}, // beyond the last character
        {"\xF5\xFE\xFF", u"\uFFFD\uFFFD\uFFFD"},           // never part of a text
        {"\xF0\x9F\x9A", u"\uFFFD\uFFFD\uFFFD"},           //
        {"\xFF\xC3\xBC\xFF", u"\uFFFD\u00FC\uFFFD"},       //
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(platform.widen(bytes), text);
}

TEST_P(TextContract, ANulIsACharacterLikeAnyOther) {
    SKIP_UNLESS_UTF8();
    EXPECT_EQ(platform.narrow(std::u16string(u"a\0b", 3), kPlenty), std::string("a\0b", 3));
    EXPECT_EQ(platform.widen(std::string("a\0b", 3)), std::u16string(u"a\0b", 3));
}

TALLOWMERE_CONTRACT(TextContract);

} // namespace
} // namespace tallowmere::test
