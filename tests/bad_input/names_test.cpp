// Names of every length and of every byte, at the very end of the memory there is, on the real system.
#include "core/ccore.hpp"
#include "tests/channels/raw_section.hpp"
#include "tests/support/attached_library.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/host_machine.hpp"

#include <gtest/gtest.h>

#include <cstring>

namespace tallowmere::test {
namespace {

constexpr std::uint16_t kUser3 = 175;

class BadNames : public ::testing::Test {
  protected:
    [[nodiscard]] std::u16string longName() const { return raw.text(place::longName(kUser3), 32); }
    [[nodiscard]] std::u16string shortName() const { return raw.text(place::shortName(kUser3), 16); }
    static std::string given(std::uint16_t channel) {
        char name[16];
        std::memset(name, 'x', sizeof name);
        GetZanVarName(channel, name);
        EXPECT_EQ(name[15], '\0');
        return name;
    }

    HostMachine machine;
    CCore core{false};
    AttachedLibrary library{core};
    RawSection raw{reinterpret_cast<std::byte*>(core.area())};
};

TEST_F(BadNames, OfEveryLengthGiveTheirFirstFifteenBytes) {
    constexpr std::size_t kLongest = 70'000; // beyond 64 KiB
    const GuardedMemory memory(kLongest + 1);
    std::memset(memory.begin(), 'a', static_cast<std::size_t>(memory.end() - memory.begin()));
    *(memory.end() - 1) = '\0';
    CaseCount cases("lengths");
    for (std::size_t length = 0; length <= kLongest; ++length) {
        ++cases;
        SetZanUserVarName(3, memory.end() - 1 - length);
        const std::u16string expected(std::min<std::size_t>(length, 15), u'a');
        ASSERT_TRUE(longName() == expected && shortName() == expected) << length;
    }
    *(memory.end() - 1) = 'a';
    for (std::size_t length = 15; length <= kLongest; ++length) { // no end but that of memory
        ++cases;
        SetZanUserVarName(3, memory.end() - length);
        ASSERT_EQ(given(kUser3), std::string(15, 'a')) << length;
    }
}

TEST_F(BadNames, OfEveryByteAreTakenAndCutAtFifteenBytes) {
    CaseCount cases("names");
    for (unsigned byte = 1; byte < 256; ++byte)
        for (std::size_t at = 0; at < 16; ++at) {
            ++cases;
            std::string name(16, 'b');
            name[at] = static_cast<char>(byte);
            SetZanUserVarName(3, name.c_str());
            const std::u16string stored = longName();
            EXPECT_LE(stored.size(), 15U);
            EXPECT_TRUE(stored == shortName());
            if (byte < 128) {
                EXPECT_EQ(given(kUser3), name.substr(0, 15));
            }
            EXPECT_LE(given(kUser3).size(), 15U);
        }
    for (unsigned first = 0x80; first < 256; ++first)
        for (unsigned second = 1; second < 256; ++second) {
            ++cases;
            const char name[] = {'c', static_cast<char>(first), static_cast<char>(second), '\0'};
            SetZanUserVarName(3, name);
            ASSERT_LE(longName().size(), 3U);
            ASSERT_TRUE(longName().starts_with(u"c"));
        }
}

TEST_F(BadNames, GoIntoSixteenBytesAtTheEndOfMemory) {
    const GuardedMemory memory(16);
    CaseCount cases("channels");
    const std::u16string longest(15, u'\u20AC'); // three bytes each in UTF-8
    for (std::uint16_t channel = 0; channel < 414; ++channel) {
        for (const std::u16string& name : {std::u16string(), longest, std::u16string(15, u'\xD800')}) {
            ++cases;
            if (!name.empty()) raw.putText(place::shortName(channel), name);
            std::memset(memory.end() - 17, 'x', 17);
            GetZanVarName(channel, memory.end() - 16);
            EXPECT_EQ(*(memory.end() - 17), 'x');
            EXPECT_EQ(*(memory.end() - 1), '\0');
        }
    }
}

TEST_F(BadNames, OfTheSectionWithoutAnEndAreCut) {
    CaseCount cases("channels");
    for (std::uint16_t channel = 0; channel < 414; ++channel) {
        ++cases;
        for (std::size_t i = 0; i < 16; ++i) raw.put<char16_t>(place::shortName(channel) + 2 * i, u'd');
        EXPECT_EQ(given(channel), std::string(15, 'd'));
    }
}

TEST_F(BadNames, NullIsNoName) {
    const auto before = raw.copy();
    CaseCount cases("null pointers");
    for (unsigned number = 0; number <= 65535; ++number) {
        ++cases;
        GetZanVarName(static_cast<std::uint16_t>(number), nullptr);
        SetZanUserVarName(static_cast<std::uint16_t>(number), nullptr);
    }
    EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
}

TEST_F(BadNames, ResultsGoToTheVeryEndOfMemory) {
    const GuardedMemory values(8);
    const GuardedMemory records(16);
    const GuardedMemory sources(2);
    auto* const value = reinterpret_cast<double*>(values.end() - 8);
    auto* const record = reinterpret_cast<ChannelValue*>(records.end() - 16);
    auto* const source = reinterpret_cast<std::uint16_t*>(sources.end() - 2);
    auto* const flag = reinterpret_cast<std::uint8_t*>(values.end() - 1);
    CaseCount cases("calls");
    for (std::uint16_t channel = 0; channel <= 414; ++channel) {
        for (int i = 0; i < 6; ++i) ++cases;
        SetZanVar(channel, 1.0, 1);
        GetZanVar(channel, value, 1, source);
        GetZanVar2(channel, record, 1, source);
        SetZanVar2(channel, record, 1);
        GetSysVar(channel, value);
        GetSysBool(channel, flag);
    }
}

} // namespace
} // namespace tallowmere::test
