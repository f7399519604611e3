// The user's settings as a real registry keeps them: right ones, and every wrong type and size.
#include "tests/process/windows/process_fixture.hpp"

#include <array>
#include <bit>
#include <cstdint>
#include <cwctype>
#include <limits>
#include <span>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kStoredVariables = 18;
constexpr std::size_t kStoredFlags = 34;
constexpr std::size_t kStoredIntegers = 11;

constexpr std::array<double, kStoredVariables> kVariableDefaults{
    15.85, 15.8, 4.4, 0, 3, 1, 1, 10, 5, 5, 5, 3, NO_VALUE, NO_VALUE, NO_VALUE, NO_VALUE, NO_VALUE, NO_VALUE};
constexpr std::array<std::uint8_t, kStoredFlags> kFlagDefaults{1, 1, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                                               0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
constexpr std::array<std::int32_t, kStoredIntegers> kIntegerDefaults{0, 0, 0, 0, 1, 0, 5, 0, 0, 0, 60};

class CoreSettings : public WindowsProcesses {
  protected:
    void setAll(const std::wstring& prefix, std::size_t count, const StoredValue& value) {
        for (std::size_t index = 0; index < count; ++index) settings_->set(prefix + std::to_wstring(index), value);
    }

    static void expectDefaults(const SharedArea& area) {
        for (std::size_t i = 0; i < kStoredVariables; ++i)
            EXPECT_EQ(area.systemVariables[i], kVariableDefaults[i]) << "Sys_v" << i;
        for (std::size_t i = 0; i < kStoredFlags; ++i) EXPECT_EQ(area.systemFlags[i], kFlagDefaults[i]) << "Sys_b" << i;
        for (std::size_t i = 0; i < kStoredIntegers; ++i)
            EXPECT_EQ(area.systemIntegers[i], kIntegerDefaults[i]) << "Sys_i" << i;
    }

    static std::wstring lowered(std::wstring text) {
        for (wchar_t& c : text)
            if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
        return text;
    }
};

TEST_F(CoreSettings, AMissingKeyGivesEveryDefaultAndIsNotMade) {
    settings_.reset();
    settings_.emplace();
    ASSERT_FALSE(UserSettings::coreKeyIsThere());
    ReadyClient client;
    const SectionView view;
    expectDefaults(view.area());
    const fs::path folder = defaultFolder();
    EXPECT_EQ(textIn(view.area().dataFolder), folder.wstring());
    EXPECT_EQ(textIn(view.area().databasePath), (folder / "database" / "Tallowmere.db").wstring());
    EXPECT_EQ(textIn(view.area().marksPath), lowered((folder / "marks.xml").wstring()));
    EXPECT_TRUE(fs::is_directory(folder));
    EXPECT_TRUE(fs::is_directory(folder / "database"));
    EXPECT_TRUE(fs::is_directory(folder / "config"));
    EXPECT_FALSE(UserSettings::coreKeyIsThere());
}

// --- numbers of a wrong type or size

struct WrongForm {
    const char* name;
    StoredValue value;
};

std::string nameOf(const testing::TestParamInfo<WrongForm>& row) {
    return row.param.name;
}

class WrongNumber : public CoreSettings, public testing::WithParamInterface<WrongForm> {};

INSTANTIATE_TEST_SUITE_P(
    , WrongNumber,
    testing::Values(WrongForm{"Dword", dword(7)}, WrongForm{"DwordOf8Bytes", raw(REG_DWORD, 8)},
                    WrongForm{"Binary0", raw(REG_BINARY, 0)}, WrongForm{"Binary4", raw(REG_BINARY, 4)},
                    WrongForm{"Binary7", raw(REG_BINARY, 7)}, WrongForm{"Binary9", raw(REG_BINARY, 9)},
                    WrongForm{"Binary16", raw(REG_BINARY, 16)}, WrongForm{"Qword", raw(REG_QWORD, 8)},
                    WrongForm{"None8", raw(REG_NONE, 8)}, WrongForm{"StringOf8Bytes", text(L"7.5")},
                    WrongForm{"MultiString8", raw(REG_MULTI_SZ, 8)}, WrongForm{"UnknownType8", raw(12345, 8)}),
    nameOf);

TEST_P(WrongNumber, LeavesTheDefault) {
    setAll(L"Sys_v", kStoredVariables, GetParam().value);
    ReadyClient client;
    expectDefaults(SectionView().area());
}

class WrongInteger : public CoreSettings, public testing::WithParamInterface<WrongForm> {};

INSTANTIATE_TEST_SUITE_P(
    , WrongInteger,
    testing::Values(WrongForm{"String", text(L"3")}, WrongForm{"StringOf4Bytes", text(L"1")},
                    WrongForm{"StringOf2Bytes", text(L"1", 0)}, WrongForm{"Binary4", raw(REG_BINARY, 4)},
                    WrongForm{"Number", number(1)}, WrongForm{"BigEndian", raw(REG_DWORD_BIG_ENDIAN, 4)},
                    WrongForm{"None4", raw(REG_NONE, 4)}, WrongForm{"None0", raw(REG_NONE, 0)},
                    WrongForm{"Qword", raw(REG_QWORD, 8)}, WrongForm{"DwordOf5Bytes", raw(REG_DWORD, 5)},
                    WrongForm{"DwordOf8Bytes", raw(REG_DWORD, 8)}, WrongForm{"UnknownType4", raw(0xFFFFFFFF, 4)}),
    nameOf);

TEST_P(WrongInteger, LeavesTheDefaultOfFlagsAndIntegers) {
    setAll(L"Sys_b", kStoredFlags, GetParam().value);
    setAll(L"Sys_i", kStoredIntegers, GetParam().value);
    ReadyClient client;
    expectDefaults(SectionView().area());
}

// --- numbers that are right

TEST_F(CoreSettings, NumbersAreTakenWithinTheirLimits) {
    for (std::size_t i = 0; i < kStoredVariables; ++i)
        settings_->set(L"Sys_v" + std::to_wstring(i), number(100.5 + static_cast<double>(i)));
    settings_->set(L"Sys_v18", number(1234));
    settings_->set(L"Sys_v03", number(1234));
    ReadyClient client;
    const SectionView view;
    for (std::size_t i = 0; i < kStoredVariables; ++i)
        EXPECT_EQ(view.area().systemVariables[i], i == 5 ? 10.0 : 100.5 + static_cast<double>(i)) << i;
    EXPECT_EQ(view.area().systemVariables[18], NO_VALUE) << "one more than are stored";
}

TEST_F(CoreSettings, SmallNumbersAreRaisedWhereALimitSaysSo) {
    for (const wchar_t* name : {L"Sys_v0", L"Sys_v1", L"Sys_v5"}) settings_->set(name, number(-2));
    ReadyClient client;
    const SectionView view;
    EXPECT_EQ(view.area().systemVariables[0], 1.0);
    EXPECT_EQ(view.area().systemVariables[1], -2.0);
    EXPECT_EQ(view.area().systemVariables[5], 0.01);
}

TEST_F(CoreSettings, NumbersThatAreNoneAreStoredBitByBitExceptWhereALimitHolds) {
    const double none = std::bit_cast<double>(std::uint64_t{0x7FF8000000000123});
    for (const wchar_t* name : {L"Sys_v0", L"Sys_v3", L"Sys_v5"}) settings_->set(name, number(none));
    settings_->set(L"Sys_v4", number(-std::numeric_limits<double>::infinity()));
    ReadyClient client;
    const SectionView view;
    EXPECT_EQ(view.area().systemVariables[0], 1.0);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(view.area().systemVariables[3]), 0x7FF8000000000123u);
    EXPECT_EQ(view.area().systemVariables[4], -std::numeric_limits<double>::infinity());
    EXPECT_EQ(view.area().systemVariables[5], 0.01);
}

TEST_F(CoreSettings, AnyDwordButZeroSetsAFlag) {
    constexpr std::array<DWORD, 5> kStored{0, 1, 2, 0x80000000, 0xFFFFFFFF};
    for (std::size_t i = 0; i < kStoredFlags; ++i)
        settings_->set(L"Sys_b" + std::to_wstring(i), dword(kStored[i % kStored.size()]));
    settings_->set(L"Sys_b34", dword(1));
    ReadyClient client;
    const SectionView view;
    for (std::size_t i = 0; i < kStoredFlags; ++i)
        EXPECT_EQ(view.area().systemFlags[i], i % kStored.size() == 0 ? 0 : 1) << i;
    EXPECT_EQ(view.area().systemFlags[34], 0) << "one more than are stored";
}

TEST_F(CoreSettings, IntegersAreHeldWithinTheirLimits) {
    setAll(L"Sys_i", kStoredIntegers, dword(99));
    settings_->set(L"Sys_i11", dword(99));
    ReadyClient client;
    constexpr std::array<std::int32_t, 12> kHeld{99, 2, 2, 5, 5, 1, 4, 99, 2, 4, 99, 0};
    const SectionView view;
    for (std::size_t i = 0; i < kHeld.size(); ++i) EXPECT_EQ(view.area().systemIntegers[i], kHeld[i]) << i;
}

TEST_F(CoreSettings, NegativeIntegersBecomeZeroButTheLastOne) {
    setAll(L"Sys_i", kStoredIntegers, dword(static_cast<DWORD>(-3)));
    ReadyClient client;
    const SectionView view;
    for (std::size_t i = 0; i + 1 < kStoredIntegers; ++i) EXPECT_EQ(view.area().systemIntegers[i], 0) << i;
    EXPECT_EQ(view.area().systemIntegers[kStoredIntegers - 1], -3);
}

TEST_F(CoreSettings, AShortDwordIsExtendedWithZeros) {
    settings_->set(L"Sys_i0", raw(REG_DWORD, 3, 0xFF));
    settings_->set(L"Sys_i7", raw(REG_DWORD, 1, 0x05));
    settings_->set(L"Sys_i10", raw(REG_DWORD, 0));
    settings_->set(L"Sys_b1", raw(REG_DWORD, 0));
    settings_->set(L"Sys_b2", raw(REG_DWORD, 2, 0x01));
    ReadyClient client;
    const SectionView view;
    EXPECT_EQ(view.area().systemIntegers[0], 0xFFFFFF);
    EXPECT_EQ(view.area().systemIntegers[7], 5);
    EXPECT_EQ(view.area().systemIntegers[10], 0);
    EXPECT_EQ(view.area().systemFlags[1], 0);
    EXPECT_EQ(view.area().systemFlags[2], 1);
}

TEST_F(CoreSettings, NamesGoWithoutRegardToCase) {
    settings_->set(L"SYS_V3", number(2.5));
    settings_->set(L"sys_b5", dword(1));
    settings_->set(L"sYs_I8", dword(2));
    ReadyClient client;
    const SectionView view;
    EXPECT_EQ(view.area().systemVariables[3], 2.5);
    EXPECT_EQ(view.area().systemFlags[5], 1);
    EXPECT_EQ(view.area().systemIntegers[8], 2);
}

TEST_F(CoreSettings, NamesThatAreAlikeOnlyAreOthers) {
    for (const wchar_t* name : {L"\u017Fys_b5", L"Sys_b05", L"Sys_b5 ", L"Sys_b", L"Sys_\uFF425"})
        settings_->set(name, dword(1));
    ReadyClient client;
    const SectionView view;
    expectDefaults(view.area());
}

TEST_F(CoreSettings, OthersAmongThemCountForNothing) {
    for (const std::size_t others : {60U, 300U}) {
        for (std::size_t i = 0; i < others; ++i) settings_->set(L"Other" + std::to_wstring(i), dword(1));
        settings_->set(L"Large", raw(REG_BINARY, 100'000));
        setAll(L"Sys_b", kStoredFlags, dword(1));
        settings_->set(L"Sys_v3", number(2.5));
        ReadyClient client;
        const SectionView view;
        EXPECT_EQ(view.area().systemVariables[3], 2.5) << others;
        EXPECT_EQ(view.area().systemVariables[4], 3) << others;
        for (std::size_t i = 0; i < kStoredFlags; ++i) EXPECT_EQ(view.area().systemFlags[i], 1) << others << ' ' << i;
    }
}

// --- texts of a wrong type or size

class WrongText : public CoreSettings, public testing::WithParamInterface<WrongForm> {};

INSTANTIATE_TEST_SUITE_P(, WrongText,
                         testing::Values(WrongForm{"Expandable", {REG_EXPAND_SZ, text(L"C:\\").bytes}},
                                         WrongForm{"Multiple", {REG_MULTI_SZ, text(L"C:\\", 2).bytes}},
                                         WrongForm{"Link", {REG_LINK, text(L"C:\\").bytes}},
                                         WrongForm{"Binary", {REG_BINARY, text(L"C:\\").bytes}},
                                         WrongForm{"None", {REG_NONE, text(L"C:\\").bytes}},
                                         WrongForm{"Dword", dword(7)}, WrongForm{"OneByte", raw(REG_SZ, 1)},
                                         WrongForm{"OddSize", raw(REG_SZ, 7)}),
                         nameOf);

TEST_P(WrongText, LeavesTheDefaultPaths) {
    for (const wchar_t* name : {L"DataFolder", L"Database2", L"MarksXml"}) settings_->set(name, GetParam().value);
    ReadyClient client;
    const SectionView view;
    const fs::path folder = defaultFolder();
    EXPECT_EQ(textIn(view.area().dataFolder), folder.wstring());
    EXPECT_EQ(textIn(view.area().databasePath), (folder / "database" / "Tallowmere.db").wstring());
    EXPECT_EQ(textIn(view.area().marksPath), lowered((folder / "marks.xml").wstring()));
}

// --- texts that are right

TEST_F(CoreSettings, AnExistingDataFolderIsTakenAndTheOtherPathsFollowIt) {
    ReadyClient client;
    const SectionView view;
    EXPECT_EQ(textIn(view.area().dataFolder), folder_.wstring());
    EXPECT_EQ(textIn(view.area().databasePath), (folder_ / "database" / "Tallowmere.db").wstring());
    EXPECT_EQ(textIn(view.area().marksPath), lowered((folder_ / "marks.xml").wstring()));
    EXPECT_TRUE(fs::is_directory(folder_ / "database"));
}

TEST_F(CoreSettings, ADataFolderThatIsMissingIsIgnoredAndNotMade) {
    const fs::path missing = folder_ / "missing";
    settings_->set(L"DataFolder", text(missing.wstring()));
    ReadyClient client;
    EXPECT_EQ(textIn(SectionView().area().dataFolder), defaultFolder().wstring());
    EXPECT_FALSE(fs::exists(missing));
}

TEST_F(CoreSettings, AnEmptyDataFolderIsIgnored) {
    settings_->set(L"DataFolder", text(L""));
    ReadyClient client;
    EXPECT_EQ(textIn(SectionView().area().dataFolder), defaultFolder().wstring());
}

TEST_F(CoreSettings, AnyExistingObjectWillDoForADataFolder) {
    const std::wstring program = ClientProcess::program().wstring();
    settings_->set(L"DataFolder", text(program));
    ReadyClient client;
    EXPECT_EQ(textIn(SectionView().area().dataFolder), program);
}

TEST_F(CoreSettings, ADataFolderWithoutATerminatorIsReadWhole) {
    settings_->set(L"DataFolder", text(folder_.wstring(), 0));
    ReadyClient client;
    EXPECT_EQ(textIn(SectionView().area().dataFolder), folder_.wstring());
}

TEST_F(CoreSettings, ADataFolderOf300CharactersIsCutTo259) {
    // Only the form with this prefix may be so long.
    std::wstring longPath = L"\\\\?\\" + folder_.wstring();
    while (longPath.size() < 300) {
        longPath += L"\\" + std::wstring(std::min<std::size_t>(60, 299 - longPath.size()), L'd');
        ASSERT_TRUE(::CreateDirectoryW(longPath.c_str(), nullptr));
    }
    ASSERT_EQ(longPath.size(), 300u);
    settings_->set(L"DataFolder", text(longPath));
    {
        ReadyClient client;
        EXPECT_EQ(textIn(SectionView().area().dataFolder), longPath.substr(0, 259));
    }
    while (longPath.size() > folder_.wstring().size() + 4) {
        EXPECT_TRUE(::RemoveDirectoryW(longPath.c_str()));
        longPath.resize(longPath.rfind(L'\\'));
    }
}

struct TakenText {
    const char* name;
    StoredValue value;
    std::wstring taken;
};

class DatabaseText : public CoreSettings, public testing::WithParamInterface<TakenText> {};

INSTANTIATE_TEST_SUITE_P(
    , DatabaseText,
    testing::Values(TakenText{"Plain", text(L"D:\\Race\\Boat.DB"), L"D:\\Race\\Boat.DB"},
                    TakenText{"WithoutTerminator", text(L"D:\\Race\\boat.db", 0), L"D:\\Race\\boat.db"},
                    TakenText{"WithTwoTerminators", text(L"D:\\boat.db", 2), L"D:\\boat.db"},
                    TakenText{"Empty", text(L""), L""}, TakenText{"OfNoBytes", raw(REG_SZ, 0), L""},
                    TakenText{"Of259Characters", text(std::wstring(259, L'x')), std::wstring(259, L'x')},
                    TakenText{"Of260Characters", text(std::wstring(260, L'x')), std::wstring(259, L'x')},
                    TakenText{"Of300CharactersUnterminated", text(std::wstring(300, L'x'), 0), std::wstring(259, L'x')},
                    TakenText{"BeyondAscii", text(L"D:\\R\u00e9gate\\\u6d77.db"), L"D:\\R\u00e9gate\\\u6d77.db"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_P(DatabaseText, IsTakenWhateverItIs) {
    settings_->set(L"Database2", GetParam().value);
    ReadyClient client;
    EXPECT_EQ(textIn(SectionView().area().databasePath), GetParam().taken);
}

class MarksText : public CoreSettings, public testing::WithParamInterface<TakenText> {};

INSTANTIATE_TEST_SUITE_P(
    , MarksText,
    testing::Values(TakenText{"Plain", text(L"D:\\Race\\MARKS.XML"), L"d:\\race\\marks.xml"},
                    TakenText{"WithoutTerminator", text(L"D:\\MARKS.XML", 0), L"d:\\marks.xml"},
                    TakenText{"WithTwoTerminators", text(L"D:\\MARKS.XML", 2), L"d:\\marks.xml"},
                    TakenText{"Empty", text(L""), L""}, TakenText{"OfNoBytes", raw(REG_SZ, 0), L""},
                    TakenText{"Of300Characters", text(std::wstring(300, L'X')), std::wstring(259, L'x')},
                    TakenText{"BeyondAscii", text(L"D:\\R\u00c9GATE.XML"), L"d:\\r\u00c9gate.xml"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_P(MarksText, IsTakenWithItsLettersAToZLowered) {
    settings_->set(L"MarksXml", GetParam().value);
    ReadyClient client;
    EXPECT_EQ(textIn(SectionView().area().marksPath), GetParam().taken);
}

} // namespace
} // namespace tallowmere::test
