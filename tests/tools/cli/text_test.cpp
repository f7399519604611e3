#include "tools/commands/table.hpp"
#include "tools/commands/text.hpp"

#include <gtest/gtest.h>

namespace tallowmere::tools {
namespace {

TEST(Width, CountsCharactersNotBytes) {
    EXPECT_EQ(width(""), 0U);
    EXPECT_EQ(width("50\u00B045'N"), 7U);
}

TEST(Width, CountsWideCharactersTwice) {
    EXPECT_EQ(width("\u6C34"), 2U);               // an ideograph
    EXPECT_EQ(width("\uFF21\u30AB\uD55C"), 6U);   // full-width, kana, Hangul
    EXPECT_EQ(width("\uFF76"), 1U);               // half-width kana
    EXPECT_EQ(width("\U0001F6A2"), 2U);           // a ship
    EXPECT_EQ(width("\U00020000\U0002FFFD"), 4U); // the second plane
    EXPECT_EQ(width("\u10FF\u1100\u115F\u1200"), 6U);
}

TEST(Width, CountsJoiningCharactersNotAtAll) {
    EXPECT_EQ(width("e\u0301"), 1U);
    EXPECT_EQ(width("\u02FF\u0300\u036F\u0370"), 2U);
}

TEST(Width, BytesThatAreNoTextCountAsSomething) {
    EXPECT_EQ(width("\xFF\x80\x80\x80\x80"), 2U);
    EXPECT_EQ(width("\xE6"), 1U);
}

TEST(CutToWidth, WideCharacterThatDoesNotFitIsLeftOut) {
    EXPECT_EQ(cutToWidth("a\u6C34\u6C34", 4), "a\u6C34");
    EXPECT_EQ(cutToWidth("\u6C34", 1), "");
    EXPECT_EQ(cutToWidth("e\u0301\u0302x", 1), "e\u0301\u0302"); // with all that joins it
}

TEST(CutToWidth, NeverCutsACharacter) {
    EXPECT_EQ(cutToWidth("\u00B0\u00B0\u00B0", 2), "\u00B0\u00B0");
    EXPECT_EQ(cutToWidth("abc", 3), "abc");
    EXPECT_EQ(cutToWidth("abc", 4), "abc");
    EXPECT_EQ(cutToWidth("abc", 0), "");
}

TEST(ShortenedTo, SaysThatMoreWasThere) {
    EXPECT_EQ(shortenedTo(3, "abc"), "abc");
    EXPECT_EQ(shortenedTo(3, "abcd"), "ab\u2026");
    EXPECT_EQ(shortenedTo(3, "a\u6C34\u6C34"), "a\u2026");
    EXPECT_EQ(shortenedTo(1, "-57.0"), "\u2026");
}

TEST(LowerCased, TouchesLatinCapitalsOnly) {
    EXPECT_EQ(lowerCased("TWD+90\u00B0 \u00C4z"), "twd+90\u00B0 \u00C4z");
}

TEST(Table, AlignsColumns) {
    Table table({Table::Align::Right, Table::Align::Left, Table::Align::Left});
    table.add({"No.", "Name", "Unit"});
    table.add({"1", "BSP", "kt"});
    table.add({"100", "Depth", ""});
    EXPECT_EQ(table.text(), "No.  Name   Unit\n"
                            "  1  BSP    kt\n"
                            "100  Depth\n");
}

TEST(Table, AlignsByCharacters) {
    Table table({Table::Align::Left, Table::Align::Left});
    table.add({"\u00B0C", "a"});
    table.add({"mbar", "b"});
    EXPECT_EQ(table.text(), "\u00B0C    a\nmbar  b\n");
}

TEST(Table, AlignsWideCharacters) {
    Table table({Table::Align::Left, Table::Align::Left});
    table.add({"\u6C34\u8239", "a"});
    table.add({"ship", "b"});
    EXPECT_EQ(table.text(), "\u6C34\u8239  a\nship  b\n");
}

TEST(Table, WithoutRowsIsEmpty) {
    EXPECT_EQ(Table({Table::Align::Left}).text(), "");
}

} // namespace
} // namespace tallowmere::tools
