// GetZanVarName and SetZanUserVarName.
#include "tests/api/exports_fixture.hpp"

namespace tallowmere::test {
namespace {

class Names : public ExportsTest {
  protected:
    /// The 16 bytes that come, and proof that no more come.
    std::string bytesOf(unsigned channel) {
        char buffer[24];
        std::memset(buffer, 0x5A, sizeof buffer);
        GetZanVarName(static_cast<std::uint16_t>(channel), buffer);
        for (std::size_t i = 16; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], 0x5A);
        return {buffer, 16};
    }
    std::string name(unsigned channel) { return bytesOf(channel).c_str(); }
    std::u16string longName(std::size_t channel) { return raw.text(place::longName(channel), 32); }
    std::u16string shortName(std::size_t channel) { return raw.text(place::shortName(channel), 16); }
    void expectNothingNamed(unsigned index, const char* text) {
        const auto before = raw.copy();
        SetZanUserVarName(static_cast<std::uint16_t>(index), text);
        EXPECT_EQ(changesOutside(before, raw.copy(), {}), "") << index;
    }
};

TEST_F(Names, CataloguesShortNameComesZeroFilled) {
    EXPECT_EQ(bytesOf(1), std::string("BSP\0\0\0\0\0\0\0\0\0\0\0\0\0", 16));
    EXPECT_EQ(name(413), "PredSeaTemp");
    EXPECT_EQ(name(172), "User 0");
    EXPECT_EQ(name(203), "User 31");
}

TEST_F(Names, OfTheClockIsEmpty) {
    EXPECT_EQ(bytesOf(0), std::string(16, '\0'));
    raw.putText(place::shortName(0), u"Clock");
    EXPECT_EQ(name(0), "Clock");
}

TEST_F(Names, OfAlternatingChannelsAreTheirOwn) {
    raw.put<std::int32_t>(place::alternateCell(0, 8), 1);
    SetZanVar(1, 6.4, 0);
    EXPECT_EQ(name(117), "Alt 0");
    EXPECT_EQ(name(126), "Alt 9");
}

TEST_F(Names, OutOfRangeWriteNothing) {
    for (unsigned channel : {414U, 32767U, 65535U}) {
        char buffer[16];
        std::memset(buffer, 0x5A, sizeof buffer);
        GetZanVarName(static_cast<std::uint16_t>(channel), buffer);
        EXPECT_EQ(std::string(buffer, 16), std::string(16, 0x5A));
    }
}

TEST_F(Names, NullIsIgnored) {
    GetZanVarName(1, nullptr);
    GetZanVarName(414, nullptr);
    expectNothingNamed(3, nullptr);
    expectNothingNamed(172, nullptr);
    expectNothingNamed(414, nullptr);
}

TEST_F(Names, NameOfTheSettingsComesFirst) {
    raw.putText(place::shortName(1), u"Speed");
    EXPECT_EQ(name(1), "Speed");
}

TEST_F(Names, AtMostFifteenCharactersArrive) {
    raw.putText(place::shortName(1), u"123456789012345");
    EXPECT_EQ(bytesOf(1), std::string("123456789012345\0", 16));
    // Nobody terminated the field.
    for (std::size_t i = 0; i < 16; ++i)
        raw.put<char16_t>(place::shortName(1) + 2 * i, static_cast<char16_t>(u'a' + i));
    EXPECT_EQ(bytesOf(1), std::string("abcdefghijklmno\0", 16));
}

TEST_F(Names, UserNumberNamesItsChannelWithBothNames) {
    SetZanUserVarName(3, "Kite");
    EXPECT_EQ(name(175), "Kite");
    EXPECT_TRUE(shortName(175) == u"Kite");
    EXPECT_TRUE(longName(175) == u"Kite");
    EXPECT_EQ(name(174), "User 2");
    EXPECT_EQ(name(176), "User 4");
    SetZanUserVarName(0, "first");
    EXPECT_EQ(name(172), "first");
    SetZanUserVarName(31, "last");
    EXPECT_EQ(name(203), "last");
}

TEST_F(Names, ChannelNumberOfAUserChannelWorksToo) {
    for (unsigned channel = 172; channel <= 203; ++channel) {
        const std::string text = std::to_string(channel) + " u";
        SetZanUserVarName(static_cast<std::uint16_t>(channel), text.c_str());
        EXPECT_EQ(name(channel), text);
    }
}

TEST_F(Names, OtherIndicesDoNothing) {
    for (unsigned index : {32U, 40U, 100U, 171U, 204U, 300U, 413U, 414U, 1000U, 32767U, 65535U})
        expectNothingNamed(index, "nobody");
}

TEST_F(Names, OnlyTheTwoNamesOfTheChannelChange) {
    const auto before = raw.copy();
    SetZanUserVarName(5, "123456789012345");
    EXPECT_EQ(changesOutside(before, raw.copy(), {{place::longName(177), 64}, {place::shortName(177), 32}}), "");
}

TEST_F(Names, NameOfTwentyCharactersIsCutToFifteen) {
    SetZanUserVarName(3, "12345678901234567890");
    EXPECT_EQ(name(175), "123456789012345");
    EXPECT_TRUE(shortName(175) == u"123456789012345");
    EXPECT_TRUE(longName(175) == u"123456789012345");
}

TEST_F(Names, SixteenBytesWithoutATerminatorAreEnough) {
    const auto text = std::make_unique<char[]>(16); // a sanitizer sees a read beyond them
    std::memset(text.get(), 'x', 16);
    SetZanUserVarName(3, text.get());
    EXPECT_EQ(name(175), std::string(15, 'x'));
}

TEST_F(Names, ShortBufferIsNotReadBeyondItsTerminator) {
    const auto text = std::make_unique<char[]>(3);
    std::memcpy(text.get(), "ab", 3);
    SetZanUserVarName(3, text.get());
    EXPECT_EQ(name(175), "ab");
}

TEST_F(Names, EmptyNameBringsTheCataloguesBack) {
    SetZanUserVarName(3, "Kite");
    SetZanUserVarName(3, "");
    EXPECT_EQ(name(175), "User 3");
    EXPECT_TRUE(longName(175).empty());
}

TEST_F(Names, ShorterNameReplacesALongerOne) {
    SetZanUserVarName(3, "Spinnaker");
    SetZanUserVarName(3, "Jib");
    EXPECT_EQ(name(175), "Jib");
    EXPECT_EQ(bytesOf(175), std::string("Jib\0\0\0\0\0\0\0\0\0\0\0\0\0", 16));
}

// --- beyond ASCII

TEST_F(Names, NonAsciiNamesComeBackAsTheyWent) {
    const std::string text = narrowTextIsUtf8() ? "H\xC3\xB6he" : "H\xF6he";
    SetZanUserVarName(3, text.c_str());
    EXPECT_TRUE(shortName(175) == u"Höhe");
    EXPECT_TRUE(longName(175) == u"Höhe");
    EXPECT_EQ(name(175), text);
}

TEST_F(Names, CharacterWithoutANarrowFormBecomesAQuestionMark) {
    // A lone surrogate has none in UTF-8; most of the world's letters have none in a code page.
    raw.putText(place::shortName(175), narrowTextIsUtf8() ? u"a\xD800z" : u"a\u4E2Dz");
    EXPECT_EQ(name(175), "a?z");
}

TEST_F(Names, Utf8CharacterIsNeverCutInTwo) {
    if (!narrowTextIsUtf8()) GTEST_SKIP() << "names leave in a code page here";
    raw.putText(place::shortName(175), std::u16string(15, u'é')); // 30 bytes in UTF-8
    EXPECT_EQ(bytesOf(175), std::string("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\0\0", 16));
    raw.putText(place::shortName(175), u"ab中中中中中"); // 2 and 3 bytes each
    EXPECT_EQ(name(175), "ab\xE4\xB8\xAD\xE4\xB8\xAD\xE4\xB8\xAD\xE4\xB8\xAD");
    raw.putText(place::shortName(175), u"123456789012\U0001F6A2"); // 12 and 4
    EXPECT_EQ(name(175), "123456789012");
    raw.putText(place::shortName(175), u"12345678901\U0001F6A2");
    EXPECT_EQ(name(175), "12345678901\xF0\x9F\x9A\xA2");
}

TEST_F(Names, CutInsideAUtf8CharacterLeavesWholeOnes) {
    if (!narrowTextIsUtf8()) GTEST_SKIP() << "names come in a code page here";
    SetZanUserVarName(3, "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9");
    EXPECT_EQ(name(175), "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9");
}

TEST_F(Names, BytesThatAreNoTextDoNoHarm) {
    for (int first = 0x80; first < 0x100; ++first) {
        const char text[] = {static_cast<char>(first), static_cast<char>(0xFF), 'x', '\0'};
        SetZanUserVarName(3, text);
        EXPECT_EQ(bytesOf(175)[15], '\0');
    }
}

} // namespace
} // namespace tallowmere::test
