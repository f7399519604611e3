#include "settings/reg_ex.hpp"
#include "tests/support/memory_platform.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace tallowmere::test {
namespace {

constexpr char16_t kName[] = u"Value";

class RegEx : public ::testing::Test {
  protected:
    void open() { key.Open(kCoreKey); }

    MemoryMachine machine;
    MemoryPlatform platform{machine};
    CRegEx key{platform};
};

TEST_F(RegEx, OpenNeverMakesTheKey) {
    key.Open(kCoreKey);
    EXPECT_FALSE(key.isOpen());
    EXPECT_TRUE(machine.settings.empty());
}

TEST_F(RegEx, CreateMakesTheKeyAndOpensAnExistingOne) {
    key.Create(kCoreKey);
    EXPECT_TRUE(key.isOpen());
    EXPECT_TRUE(machine.settings.contains(kCoreKey));
    machine.addDword(kCoreKey, kName, 7);
    key.Create(kCoreKey);
    EXPECT_EQ(key.QueryDword(kName, 0), 7);
}

TEST_F(RegEx, FailedOpenDropsTheKeyHeldBefore) {
    key.Create(kCoreKey);
    key.Open(u"Software\\Nowhere");
    EXPECT_FALSE(key.isOpen());
}

TEST_F(RegEx, FailedCreateLeavesNoKey) {
    machine.failOnce(Step::CreateSettings);
    key.Create(kCoreKey);
    EXPECT_FALSE(key.isOpen());
}

TEST_F(RegEx, WithoutKeyEveryReadGivesItsDefault) {
    EXPECT_EQ(key.QueryString(kName, u"fallback"), u"fallback");
    EXPECT_EQ(key.QueryDword(kName, -3), -3);
    EXPECT_EQ(key.QueryDouble(kName, 2.5), 2.5);
}

TEST_F(RegEx, WithoutKeyWritesDoNothing) {
    key.writeString(kName, u"text");
    key.writeDword(kName, 1);
    EXPECT_TRUE(machine.settings.empty());
}

TEST_F(RegEx, WithoutValueEveryReadGivesItsDefault) {
    machine.settings[kCoreKey];
    open();
    ASSERT_TRUE(key.isOpen());
    EXPECT_EQ(key.QueryString(kName, u"fallback"), u"fallback");
    EXPECT_EQ(key.QueryDword(kName, -3), -3);
    EXPECT_EQ(key.QueryDouble(kName, 2.5), 2.5);
}

TEST_F(RegEx, StringLosesItsTerminator) {
    machine.addString(kCoreKey, kName, u"D:\\Race");
    open();
    EXPECT_EQ(key.QueryString(kName, u"fallback"), u"D:\\Race");
}

TEST_F(RegEx, StringWithoutTerminatorIsReadWhole) {
    machine.addString(kCoreKey, kName, u"D:\\Race", 0);
    open();
    EXPECT_EQ(key.QueryString(kName, u"fallback"), u"D:\\Race");
}

TEST_F(RegEx, StringWithTwoTerminatorsKeepsOneNul) {
    machine.addString(kCoreKey, kName, u"D:\\Race", 2);
    open();
    EXPECT_EQ(key.QueryString(kName, u"fallback"), std::u16string(u"D:\\Race\0", 8));
}

TEST_F(RegEx, EmptyStringsAreNoReasonForTheDefault) {
    machine.addString(kCoreKey, kName, u"", 0);
    machine.addString(kCoreKey, u"Terminated", u"", 1);
    open();
    EXPECT_EQ(key.QueryString(kName, u"fallback"), u"");
    EXPECT_EQ(key.QueryString(u"Terminated", u"fallback"), u"");
}

TEST_F(RegEx, StringOfOddSizeGivesTheDefault) {
    for (const std::string& bytes : {std::string("a"), std::string("a\0b", 3), std::string("a\0b\0\0", 5)}) {
        machine.addBytes(kCoreKey, kName, platform::SettingsType::String, bytes);
        open();
        EXPECT_EQ(key.QueryString(kName, u"fallback"), u"fallback") << bytes.size();
    }
}

TEST_F(RegEx, OnlyPlainStringsAreTexts) {
    using enum platform::SettingsType;
    for (const auto type : {None, ExpandString, Binary, Dword, MultiString, static_cast<platform::SettingsType>(11),
                            static_cast<platform::SettingsType>(0xFFFFFFFF)}) {
        machine.addBytes(kCoreKey, kName, type, std::string("a\0\0\0", 4));
        open();
        EXPECT_EQ(key.QueryString(kName, u"fallback"), u"fallback") << static_cast<std::uint32_t>(type);
    }
}

TEST_F(RegEx, FailedQueriesGiveTheDefault) {
    machine.addString(kCoreKey, kName, u"text");
    open();
    machine.failOnce(Step::DescribeValue);
    EXPECT_EQ(key.QueryString(kName, u"fallback"), u"fallback");
    machine.failOnce(Step::ReadValue);
    EXPECT_EQ(key.QueryString(kName, u"fallback"), u"fallback");
    EXPECT_EQ(key.QueryString(kName, u"fallback"), u"text");
}

TEST_F(RegEx, DwordIsReadWithItsSign) {
    machine.addDword(kCoreKey, kName, 0xFFFFFFFB);
    open();
    EXPECT_EQ(key.QueryDword(kName, 0), -5);
}

TEST_F(RegEx, ShortDwordIsExtendedWithZeros) {
    const std::string stored("\xFF\xFF\xFF\xFF", 4);
    constexpr std::int32_t kExpected[] = {0, 0xFF, 0xFFFF, 0xFFFFFF, -1};
    for (std::size_t size = 0; size <= 4; ++size) {
        machine.addBytes(kCoreKey, kName, platform::SettingsType::Dword, stored.substr(0, size));
        open();
        EXPECT_EQ(key.QueryDword(kName, 77), kExpected[size]) << size;
    }
}

TEST_F(RegEx, DwordOfAnotherTypeOrTooManyBytesGivesTheDefault) {
    using enum platform::SettingsType;
    machine.addBytes(kCoreKey, kName, Dword, std::string(5, '\1'));
    open();
    EXPECT_EQ(key.QueryDword(kName, 77), 77);
    for (const auto type : {None, String, ExpandString, Binary, MultiString, static_cast<platform::SettingsType>(11)}) {
        machine.addBytes(kCoreKey, kName, type, std::string(4, '\1'));
        open();
        EXPECT_EQ(key.QueryDword(kName, 77), 77) << static_cast<std::uint32_t>(type);
    }
}

TEST_F(RegEx, DoubleIsReadBitForBit) {
    for (const double value : {0.0, -0.0, 12.35, 5e-324, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
        machine.addDouble(kCoreKey, kName, value);
        open();
        EXPECT_EQ(std::bit_cast<std::uint64_t>(key.QueryDouble(kName, 1.0)), std::bit_cast<std::uint64_t>(value));
    }
}

TEST_F(RegEx, DoubleOfAnotherTypeOrSizeGivesTheDefault) {
    using enum platform::SettingsType;
    for (const std::size_t size : {0u, 1u, 4u, 7u, 9u, 16u}) {
        machine.addBytes(kCoreKey, kName, Binary, std::string(size, '\1'));
        open();
        EXPECT_EQ(key.QueryDouble(kName, 2.5), 2.5) << size;
    }
    for (const auto type : {None, String, ExpandString, Dword, MultiString, static_cast<platform::SettingsType>(11)}) {
        machine.addBytes(kCoreKey, kName, type, std::string(8, '\1'));
        open();
        EXPECT_EQ(key.QueryDouble(kName, 2.5), 2.5) << static_cast<std::uint32_t>(type);
    }
}

TEST_F(RegEx, WrittenValuesReadBack) {
    key.Create(kCoreKey);
    key.writeString(u"Text", u"C:\\Programs\\Nav\\");
    key.writeDword(u"Number", 0xFFFFFFFB);
    EXPECT_EQ(key.QueryString(u"Text", u""), u"C:\\Programs\\Nav\\");
    EXPECT_EQ(key.QueryDword(u"Number", 0), -5);
    EXPECT_EQ(machine.settings[kCoreKey][u"Text"].bytes.size(), (16 + 1) * sizeof(char16_t));
}

TEST(IndexedName, HasNoLeadingZeros) {
    EXPECT_EQ(indexedName(u"Sys_v", 0), u"Sys_v0");
    EXPECT_EQ(indexedName(u"Sys_v", 17), u"Sys_v17");
}

} // namespace
} // namespace tallowmere::test
