#include "settings/core_settings.hpp"
#include "settings/data_folders.hpp"
#include "settings/reg_ex.hpp"
#include "tests/support/new_section.hpp"

#include <bit>
#include <limits>

namespace tallowmere::test {
namespace {

class CoreSettings : public NewSection {
  protected:
    void read() { readCoreSettings(context); }
};

TEST_F(CoreSettings, WithoutKeyTheDefaultsHoldAndNoKeyIsMade) {
    const auto before = makeArea();
    read();
    EXPECT_TRUE(machine.settings.empty());
    EXPECT_EQ(readText(area->dataFolder), u"C:\\ProgramData\\Tallowmere");
    EXPECT_EQ(readText(area->databasePath), u"C:\\ProgramData\\Tallowmere\\database\\Tallowmere.db");
    EXPECT_EQ(readText(area->marksPath), u"c:\\programdata\\tallowmere\\marks.xml");
    EXPECT_EQ(std::memcmp(area->systemVariables, before->systemVariables, sizeof before->systemVariables), 0);
    EXPECT_EQ(std::memcmp(area->systemFlags, before->systemFlags, sizeof before->systemFlags), 0);
    const std::int32_t integers[kSystemIntegerCount] = {0, 0, 0, 0, 1, 0, 5, 0, 0, 0, 60, 0, 0};
    EXPECT_EQ(std::memcmp(area->systemIntegers, integers, sizeof integers), 0);
}

TEST_F(CoreSettings, MissingFoldersAreMade) {
    read();
    EXPECT_TRUE(machine.files.contains(u"C:\\ProgramData\\Tallowmere"));
    EXPECT_TRUE(machine.files.contains(u"C:\\ProgramData\\Tallowmere\\database"));
}

TEST_F(CoreSettings, WithoutSectionNothingIsAsked) {
    readCoreSettings(withoutSection);
    EXPECT_TRUE(machine.trace.empty());
}

TEST_F(CoreSettings, DataFolderThatExistsIsTaken) {
    machine.files[u"D:\\Race"] = std::nullopt;
    machine.addString(kCoreKey, u"DataFolder", u"D:\\Race");
    read();
    EXPECT_EQ(readText(area->dataFolder), u"D:\\Race");
    EXPECT_EQ(readText(area->databasePath), u"D:\\Race\\database\\Tallowmere.db");
    EXPECT_EQ(readText(area->marksPath), u"d:\\race\\marks.xml");
}

TEST_F(CoreSettings, DataFolderMayBeAnyObject) {
    machine.addFile(u"D:\\race.zip", "");
    machine.addString(kCoreKey, u"DataFolder", u"D:\\race.zip");
    read();
    EXPECT_EQ(readText(area->dataFolder), u"D:\\race.zip");
}

TEST_F(CoreSettings, DataFolderThatIsMissingLeavesTheComputedOneAndIsNotMade) {
    machine.addString(kCoreKey, u"DataFolder", u"C:\\Absent");
    read();
    EXPECT_EQ(readText(area->dataFolder), u"C:\\ProgramData\\Tallowmere");
    EXPECT_FALSE(machine.files.contains(u"C:\\Absent"));
}

TEST_F(CoreSettings, EmptyDataFolderLeavesTheComputedOne) {
    machine.addString(kCoreKey, u"DataFolder", u"");
    read();
    EXPECT_EQ(readText(area->dataFolder), u"C:\\ProgramData\\Tallowmere");
}

TEST_F(CoreSettings, DataFolderOf300CharactersIsCutTo259) {
    const std::u16string folder = u"D:\\" + std::u16string(297, u'r');
    machine.files[folder] = std::nullopt;
    machine.addString(kCoreKey, u"DataFolder", folder);
    read();
    EXPECT_EQ(readText(area->dataFolder), folder.substr(0, 259));
    EXPECT_EQ(area->dataFolder[259], u'\0');
}

TEST_F(CoreSettings, DataFolderWithASecondTerminatorIsTheSameFolder) {
    machine.files[u"D:\\Race"] = std::nullopt;
    machine.addString(kCoreKey, u"DataFolder", u"D:\\Race", 2);
    read();
    EXPECT_EQ(readText(area->dataFolder), u"D:\\Race");
}

TEST_F(CoreSettings, DatabaseIsTakenAsItStands) {
    machine.addString(kCoreKey, u"Database2", u"D:\\Race\\Boat.DB");
    read();
    EXPECT_EQ(readText(area->databasePath), u"D:\\Race\\Boat.DB");
    // The next resolution throws it away: its extension is not exactly ".db".
    EXPECT_EQ(GetDatabasePath(context), u"C:\\ProgramData\\Tallowmere\\database\\Tallowmere.db");
    EXPECT_EQ(readText(area->databasePath), u"");
}

TEST_F(CoreSettings, EmptyDatabaseEmptiesTheFieldAndTheDefaultIsComputedAgain) {
    machine.addString(kCoreKey, u"Database2", u"");
    read();
    EXPECT_EQ(readText(area->databasePath), u"");
    EXPECT_EQ(GetDatabasePath(context), u"C:\\ProgramData\\Tallowmere\\database\\Tallowmere.db");
}

TEST_F(CoreSettings, DatabaseAndMarksOf300CharactersAreCutTo259) {
    const std::u16string text(300, u'x');
    machine.addString(kCoreKey, u"Database2", text);
    machine.addString(kCoreKey, u"MarksXml", text);
    read();
    EXPECT_EQ(readText(area->databasePath), text.substr(0, 259));
    EXPECT_EQ(readText(area->marksPath), text.substr(0, 259));
}

TEST_F(CoreSettings, MarksPathIsLowerCased) {
    machine.addString(kCoreKey, u"MarksXml", u"D:\\Race\\MARKS.XML");
    read();
    EXPECT_EQ(readText(area->marksPath), u"d:\\race\\marks.xml");
}

TEST_F(CoreSettings, OnlyLettersAToZAreLowerCased) {
    machine.addString(kCoreKey, u"MarksXml", u"D:\\@AZ[\u00C4\u0416.XML");
    read();
    EXPECT_EQ(readText(area->marksPath), u"d:\\@az[\u00C4\u0416.xml");
}

TEST_F(CoreSettings, MarksPathKeepsItsCaseWhereCaseMatters) {
    machine.separator = u'/';
    machine.caseSensitive = true;
    machine.addString(kCoreKey, u"MarksXml", u"/Race/MARKS.XML");
    read();
    EXPECT_EQ(readText(area->marksPath), u"/Race/MARKS.XML");
}

TEST_F(CoreSettings, EmptyMarksPathIsIgnored) {
    writeText(area->marksPath, u"before");
    machine.addString(kCoreKey, u"MarksXml", u"");
    read();
    EXPECT_EQ(readText(area->marksPath), u"before");
}

TEST_F(CoreSettings, PathsOfAnotherTypeGiveTheDefaults) {
    using enum platform::SettingsType;
    for (const auto type : {None, ExpandString, Binary, Dword, MultiString}) {
        area = makeArea();
        context.area = area.get();
        for (const char16_t* name : {u"DataFolder", u"Database2", u"MarksXml"})
            machine.addBytes(kCoreKey, name, type, std::string("C\0:\0\0\0", 6));
        read();
        EXPECT_EQ(readText(area->dataFolder), u"C:\\ProgramData\\Tallowmere");
        EXPECT_EQ(readText(area->databasePath), u"C:\\ProgramData\\Tallowmere\\database\\Tallowmere.db");
        EXPECT_EQ(readText(area->marksPath), u"c:\\programdata\\tallowmere\\marks.xml");
    }
}

TEST_F(CoreSettings, EveryStoredVariableArrives) {
    for (std::size_t index = 0; index < 20; ++index)
        machine.addDouble(kCoreKey, indexedName(u"Sys_v", index), 1.25 + static_cast<double>(index) / 4);
    read();
    for (std::size_t index = 0; index < 18; ++index)
        EXPECT_EQ(system.variable(index), 1.25 + static_cast<double>(index) / 4) << index;
    EXPECT_EQ(system.variable(18), NO_VALUE);
}

TEST_F(CoreSettings, VariablesPassTheirLimits) {
    machine.addDouble(kCoreKey, u"Sys_v0", 0.5);
    machine.addDouble(kCoreKey, u"Sys_v5", 50.0);
    machine.addDouble(kCoreKey, u"Sys_v3", -50.0);
    read();
    EXPECT_EQ(system.variable(0), 1.0);
    EXPECT_EQ(system.variable(5), 10.0);
    EXPECT_EQ(system.variable(3), -50.0);
}

TEST_F(CoreSettings, NanVariablesBecomeTheLowerBoundOrStay) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const char16_t* name : {u"Sys_v0", u"Sys_v3", u"Sys_v5"}) machine.addDouble(kCoreKey, name, nan);
    read();
    EXPECT_EQ(system.variable(0), 1.0);
    EXPECT_EQ(system.variable(5), 0.01);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(system.variable(3)), std::bit_cast<std::uint64_t>(nan));
}

TEST_F(CoreSettings, VariableOfAnotherTypeOrSizeKeepsItsDefault) {
    using enum platform::SettingsType;
    machine.addDword(kCoreKey, u"Sys_v3", 9);
    machine.addBytes(kCoreKey, u"Sys_v4", Binary, std::string(4, '\1'));
    machine.addBytes(kCoreKey, u"Sys_v7", Binary, std::string(16, '\1'));
    machine.addBytes(kCoreKey, u"Sys_v8", Binary, "");
    machine.addString(kCoreKey, u"Sys_v9", u"abc"); // 8 bytes
    read();
    EXPECT_EQ(system.variable(3), 0.0);
    EXPECT_EQ(system.variable(4), 3.0);
    EXPECT_EQ(system.variable(7), 10.0);
    EXPECT_EQ(system.variable(8), 5.0);
    EXPECT_EQ(system.variable(9), 5.0);
}

TEST_F(CoreSettings, EveryStoredFlagArrives) {
    for (std::size_t index = 0; index < 36; ++index)
        machine.addDword(kCoreKey, indexedName(u"Sys_b", index), index % 2 == 0 ? 1 : 0);
    read();
    for (std::size_t index = 0; index < 34; ++index) EXPECT_EQ(system.flag(index), index % 2 == 0 ? 1 : 0) << index;
    EXPECT_EQ(system.flag(34), 0);
}

TEST_F(CoreSettings, FlagIsOneForAnyNonZeroNumber) {
    machine.addDword(kCoreKey, u"Sys_b4", 2);
    machine.addDword(kCoreKey, u"Sys_b5", 7);
    machine.addDword(kCoreKey, u"Sys_b6", 0x100);
    machine.addDword(kCoreKey, u"Sys_b8", 0x80000000);
    read();
    for (const std::size_t index : {4u, 5u, 6u, 8u}) EXPECT_EQ(system.flag(index), 1) << index;
}

TEST_F(CoreSettings, FlagOfAnotherTypeOrSizeKeepsItsDefault) {
    using enum platform::SettingsType;
    machine.addString(kCoreKey, u"Sys_b5", u"1", 1); // 4 bytes
    machine.addString(kCoreKey, u"Sys_b1", u"0", 1);
    machine.addBytes(kCoreKey, u"Sys_b3", Dword, std::string(8, '\0'));
    machine.addBytes(kCoreKey, u"Sys_b7", Binary, std::string(4, '\0'));
    read();
    EXPECT_EQ(system.flag(5), 0);
    for (const std::size_t index : {1u, 3u, 7u}) EXPECT_EQ(system.flag(index), 1) << index;
}

TEST_F(CoreSettings, EveryStoredIntegerArrives) {
    const std::int32_t stored[] = {7, 2, 1, 5, 4, 1, 3, 1000, 2, 4, -60};
    for (std::size_t index = 0; index < std::size(stored); ++index)
        machine.addDword(kCoreKey, indexedName(u"Sys_i", index), static_cast<std::uint32_t>(stored[index]));
    machine.addDword(kCoreKey, u"Sys_i11", 9);
    read();
    for (std::size_t index = 0; index < std::size(stored); ++index)
        EXPECT_EQ(system.integer(index), stored[index]) << index;
    EXPECT_EQ(system.integer(11), 0);
}

TEST_F(CoreSettings, IntegersPassTheirLimits) {
    for (std::size_t index = 0; index <= 10; ++index)
        machine.addDword(kCoreKey, indexedName(u"Sys_i", index), 0x7FFFFFFF);
    read();
    const std::int32_t high[] = {0x7FFFFFFF, 2, 2, 5, 5, 1, 4, 0x7FFFFFFF, 2, 4, 0x7FFFFFFF};
    for (std::size_t index = 0; index <= 10; ++index) EXPECT_EQ(system.integer(index), high[index]) << index;

    for (std::size_t index = 0; index <= 10; ++index)
        machine.addDword(kCoreKey, indexedName(u"Sys_i", index), 0xFFFFFFFD);
    read();
    for (std::size_t index = 0; index < 10; ++index) EXPECT_EQ(system.integer(index), 0) << index;
    EXPECT_EQ(system.integer(10), -3);
}

TEST_F(CoreSettings, IntegerSixStaysFiveUnlessAValueWasReallyRead) {
    read();
    EXPECT_EQ(system.integer(6), 5);
    machine.addString(kCoreKey, u"Sys_i6", u"3");
    read();
    EXPECT_EQ(system.integer(6), 5);
    machine.addBytes(kCoreKey, u"Sys_i6", platform::SettingsType::Dword, std::string(8, '\0'));
    read();
    EXPECT_EQ(system.integer(6), 5);
    machine.addDword(kCoreKey, u"Sys_i6", 5);
    read();
    EXPECT_EQ(system.integer(6), 4);
    machine.addDword(kCoreKey, u"Sys_i6", 3);
    read();
    EXPECT_EQ(system.integer(6), 3);
}

TEST_F(CoreSettings, SomeIntegersAreResetWhateverTheSectionHeld) {
    for (std::int32_t& integer : area->systemIntegers) integer = 77;
    read();
    for (const std::size_t index : {1u, 2u, 3u, 8u}) EXPECT_EQ(system.integer(index), 0) << index;
    EXPECT_EQ(system.integer(4), 1);
    for (const std::size_t index : {0u, 5u, 6u, 7u, 9u, 10u, 11u, 12u}) EXPECT_EQ(system.integer(index), 77) << index;
}

TEST_F(CoreSettings, ValuesAreReadInTheirOrder) {
    machine.settings[kCoreKey];
    read();
    ASSERT_FALSE(machine.trace.empty());
    EXPECT_EQ(machine.trace.front(), "OpenSettings");
    const auto described = std::count(machine.trace.begin(), machine.trace.end(), "DescribeValue");
    const auto readOut = std::count(machine.trace.begin(), machine.trace.end(), "ReadValue");
    EXPECT_EQ(described, 3);
    EXPECT_EQ(readOut, 18 + 34 + 11);
    const auto folder = std::find(machine.trace.begin(), machine.trace.end(), "ProgramDataFolder");
    const auto firstQuery = std::find(machine.trace.begin(), machine.trace.end(), "DescribeValue");
    EXPECT_LT(folder, firstQuery);
}

TEST_F(CoreSettings, OneFailingStepCostsOneSettingOnly) {
    for (std::size_t index = 0; index < 18; ++index) machine.addDouble(kCoreKey, indexedName(u"Sys_v", index), 2.0);
    for (std::size_t index = 0; index < 34; ++index) machine.addDword(kCoreKey, indexedName(u"Sys_b", index), 1);
    for (std::size_t index = 0; index < 11; ++index) machine.addDword(kCoreKey, indexedName(u"Sys_i", index), 1);
    const auto misses = [&] {
        int count = 0;
        for (std::size_t index = 0; index < 18; ++index) count += system.variable(index) != 2.0;
        for (std::size_t index = 0; index < 34; ++index) count += system.flag(index) != 1;
        for (std::size_t index = 0; index < 11; ++index) count += system.integer(index) != 1;
        return count;
    };
    machine.failAnyOnce(0);
    read();
    ASSERT_EQ(misses(), 0);
    const int requests = machine.requests();
    ASSERT_GT(requests, 63);
    for (int nth = 1; nth <= requests; ++nth) {
        initialiseArea(*area);
        std::memset(area->dataFolder, 0, sizeof area->dataFolder);
        machine.failAnyOnce(nth);
        read();
        // The first step is the opening of the key: without it every value keeps its default.
        EXPECT_LE(misses(), nth == 1 ? 63 : 1) << nth;
    }
}

TEST_F(CoreSettings, FailedOpeningLeavesEveryDefault) {
    machine.addDouble(kCoreKey, u"Sys_v3", 9.0);
    machine.addDword(kCoreKey, u"Sys_i6", 3);
    machine.failOnce(Step::OpenSettings);
    read();
    EXPECT_EQ(system.variable(3), 0.0);
    EXPECT_EQ(system.integer(6), 5);
}

TEST_F(CoreSettings, NoiseInTheSectionIsSurvived) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        fillWithNoise(seed);
        read();
        EXPECT_LE(readText(area->databasePath).size(), 259u);
        for (std::size_t index = 0; index < 34; ++index) EXPECT_LE(system.flag(index), 1);
    }
}

} // namespace
} // namespace tallowmere::test
