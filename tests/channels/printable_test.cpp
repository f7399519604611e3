// Text that is safe to show: UTF-8 without what steers a terminal or turns the writing round.
#include "core/channels/printable.hpp"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using namespace std::string_view_literals;

TEST(Printable, KeepsWhatIsPrintable) {
    EXPECT_EQ(printable(u"TWD + 90\u00B0"sv), "TWD + 90\u00B0");
    EXPECT_EQ(printable(u"Frühling \u6C34 \U0001F6A2"sv), "Frühling \u6C34 \U0001F6A2");
    EXPECT_EQ(printable("Frühling \u6C34 \U0001F6A2"sv), "Frühling \u6C34 \U0001F6A2");
}

TEST(Printable, ReplacesControlCharacters) {
    EXPECT_EQ(printable(u"\x1b[2Jgone\r\n\t\0\x7f"sv), "?[2Jgone?????");
    EXPECT_EQ(printable(u"a\u009B31mb\u0085"sv), "a?31mb?");
    EXPECT_EQ(printable("\x1b]0;title\a"sv), "?]0;title?");
    EXPECT_EQ(printable("\xC2\x9B"
                        "31m"sv),
              "?31m");
}

TEST(Printable, ReplacesWhatTurnsTheWritingRound) {
    EXPECT_EQ(printable(u"a\u202Eb\u2066c\u200Fd\uFEFFe\u2028"sv), "a?b?c?d?e?");
    EXPECT_EQ(printable("a\u202Eb"sv), "a?b");
}

TEST(Printable, ReplacesHalvesOfSurrogatePairs) {
    constexpr char16_t text[] = {u'a', 0xD800, u'b', 0xDC00, 0xD800};
    EXPECT_EQ(printable(std::u16string_view(text, 5)), "a?b??");
}

TEST(Printable, ReplacesBytesThatAreNoText) {
    EXPECT_EQ(printable("a\xFF"
                        "b\xC3"sv),
              "a?b?");
    EXPECT_EQ(printable("\xC0\x80"sv), "??");        // overlong
    EXPECT_EQ(printable("\xE0\x80\x80"sv), "???");   // overlong
    EXPECT_EQ(printable("\xED\xA0\x80"sv), "?");     // half a surrogate pair
    EXPECT_EQ(printable("\xF4\x90\x80\x80"sv), "?"); // beyond the last character
    EXPECT_EQ(printable("\xF0\x9F\x9A"sv), "???");   // cut
    EXPECT_EQ(printable("\x80\xBF"sv), "??");
}

TEST(Printable, ReplacesWhatLiesAtBothEndsOfEachRange) {
    EXPECT_EQ(printable(u"\u061B\u061C\u061D"sv), "\u061B?\u061D");
    EXPECT_EQ(printable(u"\u200A\u200B\u200F\u2010"sv), "\u200A??\u2010");
    EXPECT_EQ(printable(u"\u2027\u2028\u202E\u202F"sv), "\u2027??\u202F");
    EXPECT_EQ(printable(u"\u205F\u2060\u206F\u2070"sv), "\u205F??\u2070");
    EXPECT_EQ(printable(u"\u009F\u00A0"sv), "?\u00A0");
}

} // namespace
} // namespace tallowmere
