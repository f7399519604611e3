// The first process of a machine: it makes the section and fills it.
#include "core/channels/area_defaults.hpp"
#include "tests/channels/store_fixture.hpp"
#include "tests/core/core_fixture.hpp"

namespace tallowmere::test {
namespace {

class CoreCreation : public CoreTest {
  protected:
    /// Where a step was first or last asked for; the end of the trace when it never was.
    [[nodiscard]] std::ptrdiff_t firstOf(const std::string& step) const {
        return std::find(machine.trace.begin(), machine.trace.end(), step) - machine.trace.begin();
    }
    [[nodiscard]] std::ptrdiff_t lastOf(const std::string& step) const {
        const auto found = std::find(machine.trace.rbegin(), machine.trace.rend(), step);
        return machine.trace.rend() - found - 1;
    }
};

TEST_F(CoreCreation, SectionIsNamedAfterLayoutNumberAndSize) {
    EXPECT_TRUE(sectionName() == kSectionName);
    const auto core = start();
    EXPECT_TRUE(sectionLives());
    EXPECT_EQ(reinterpret_cast<std::byte*>(core->area()), machine.section(kSectionName));
    EXPECT_TRUE(core->madeSection());
    EXPECT_TRUE(core->setupDone());
}

TEST_F(CoreCreation, OnABareMachineEveryByteIsTheDocumentedDefault) {
    const auto core = start();

    SectionMemory memory;
    initialiseArea(*memory.area()); // checked on its own against written-out bytes
    RawSection expected(memory.bytes());
    expected.putText(place::kDataFolder, u"C:\\ProgramData\\Tallowmere");
    expected.putText(place::kDatabasePath, u"C:\\ProgramData\\Tallowmere\\database\\Tallowmere.db");
    expected.putText(place::kMarksPath, u"c:\\programdata\\tallowmere\\marks.xml");
    expected.put<std::int32_t>(place::integer(4), 1);
    for (std::size_t boat = 1; boat < 100; ++boat) expected.putText(place::boatName(boat), numbered(u"Boat ", boat));
    for (std::size_t channel = 1; channel < 414; ++channel)
        expected.put<std::uint8_t>(place::log(channel), kCatalogue[channel].logDefault);
    for (std::size_t boat = 0; boat < 2; ++boat) {
        expected.put<std::int64_t>(place::fullStamp(0, boat), machine.now);
        expected.put<std::int64_t>(place::fullValue(0, boat) + 8, machine.now);
        expected.put<std::int64_t>(place::fullSecond(0, boat) + 8, 0);
        expected.put<std::int64_t>(place::fullThird(0, boat) + 8, machine.now);
    }
    EXPECT_EQ(changesOutside(expected.copy(), section().copy(), {}), "");
}

TEST_F(CoreCreation, OnABareMachineTheDataFoldersAreMadeAndNoSettings) {
    const auto core = start();
    for (const char16_t* folder : {u"C:\\ProgramData\\Tallowmere", u"C:\\ProgramData\\Tallowmere\\database",
                                   u"C:\\ProgramData\\Tallowmere\\config"}) {
        const auto found = machine.files.find(folder);
        ASSERT_NE(found, machine.files.end());
        EXPECT_FALSE(found->second.has_value()); // a folder
    }
    EXPECT_TRUE(machine.settings.empty());
    EXPECT_FALSE(asked("CreateSettings"));
    EXPECT_FALSE(asked("WriteValue"));
    EXPECT_TRUE(machine.errorsShown.empty());
    EXPECT_EQ(machine.quitsPosted, 0);
    EXPECT_TRUE(machine.sleeps.empty());
}

TEST_F(CoreCreation, StepsComeInOrder) {
    addUsersSettings(machine);
    addUsersFiles(machine);
    const auto core = start();
    ASSERT_GE(machine.trace.size(), 2U);
    EXPECT_EQ(machine.trace[0], "CreateSection");
    EXPECT_EQ(machine.trace[1], "MapSection");
    EXPECT_LT(firstOf("OpenSettings"), firstOf("ReadValue"));
    EXPECT_LT(lastOf("ReadValue"), firstOf("OpenXml"));
    EXPECT_LT(lastOf("NextElement"), firstOf("OpenFile"));
    EXPECT_EQ(std::count(machine.trace.begin(), machine.trace.end(), "OpenXml"), 2);
    EXPECT_EQ(std::count(machine.trace.begin(), machine.trace.end(), "OpenFile"), 1);
}

TEST_F(CoreCreation, SettingsAreOpenedOnceForTheDefaultsWithNothingReadAndOnceMoreToBeRead) {
    addUsersSettings(machine);
    const auto core = start();
    EXPECT_EQ(std::count(machine.trace.begin(), machine.trace.end(), "OpenSettings"), 2);
    EXPECT_LT(lastOf("OpenSettings"), firstOf("DescribeValue"));
    EXPECT_LT(lastOf("OpenSettings"), firstOf("ReadValue"));
}

TEST_F(CoreCreation, BoatsAreReadBeforeChannels) {
    addUsersSettings(machine);
    addUsersFiles(machine);
    machine.failOnce(Step::OpenXml);
    const auto core = start();
    EXPECT_TRUE(section().text(place::boatName(3), 32) == u"Boat 3");
    EXPECT_TRUE(section().text(place::shortName(180), 16) == u"Keel depth");
}

TEST_F(CoreCreation, ClockIsStampedAtTheEnd) {
    machine.tick = 5;
    const auto core = start();
    EXPECT_EQ(section().get<std::int64_t>(place::fullStamp(0, 0)), machine.now);
    EXPECT_EQ(section().get<std::int64_t>(place::fullValue(0, 0) + 8), machine.now);
    EXPECT_EQ(section().get<std::int64_t>(place::fullValue(0, 1) + 8), machine.now);
}

TEST_F(CoreCreation, UsersSettingsFillTheSection) {
    addUsersSettings(machine);
    addUsersFiles(machine);
    const auto core = start();
    const RawSection raw = section();
    EXPECT_TRUE(raw.text(place::kDataFolder, 260) == u"D:\\Race");
    EXPECT_TRUE(raw.text(place::kDatabasePath, 260) == u"E:\\Season.db");
    EXPECT_TRUE(raw.text(place::kMarksPath, 260) == u"d:\\race\\marks.xml");
    for (std::size_t i = 0; i < 18; ++i) EXPECT_EQ(raw.get<double>(place::variable(i)), usersVariable(i)) << i;
    for (std::size_t i = 0; i < 34; ++i)
        EXPECT_EQ(raw.get<std::uint8_t>(place::flag(i)), flagIsSetAtFirst(i) ? 0 : 1) << i;
    for (std::size_t i = 0; i < 11; ++i) EXPECT_EQ(raw.get<std::int32_t>(place::integer(i)), kUsersIntegers[i]) << i;
}

TEST_F(CoreCreation, FilesOfTheUsersDataFolderFillTheSection) {
    addUsersSettings(machine);
    addUsersFiles(machine);
    const auto core = start();
    const RawSection raw = section();
    EXPECT_TRUE(raw.text(place::boatName(3), 32) == u"Falcon");
    EXPECT_EQ(raw.get<std::uint32_t>(place::mmsi(3)), 235000001U);
    EXPECT_EQ(raw.get<std::uint32_t>(place::colour(3)), 0x0000FFU);
    EXPECT_TRUE(raw.text(place::boatName(4), 32) == u"Boat 4");
    EXPECT_EQ(raw.get<std::uint8_t>(place::log(5)), 0);
    EXPECT_EQ(raw.get<std::uint16_t>(place::damping(5)), 7);
    EXPECT_EQ(raw.get<std::uint16_t>(place::precision(5)), 3);
    EXPECT_EQ(raw.get<std::int16_t>(place::unitClass(180)), 3);
    EXPECT_TRUE(raw.text(place::longName(180), 32) == u"Keel depth");
    for (std::size_t column = 0; column < 9; ++column) {
        EXPECT_EQ(raw.get<std::int32_t>(place::alternateCell(0, column)), static_cast<std::int32_t>(column + 1));
        EXPECT_EQ(raw.get<std::int32_t>(place::alternateCell(9, column)), static_cast<std::int32_t>(column + 10));
        EXPECT_EQ(raw.get<std::int32_t>(place::alternateCell(5, column)), 32767);
    }
}

TEST_F(CoreCreation, SettingsBeyondTheListsAreNotRead) {
    machine.addDouble(kCoreSettings, u"Sys_v18", 1.5);
    machine.addDword(kCoreSettings, u"Sys_b34", 1);
    machine.addDword(kCoreSettings, u"Sys_i11", 9);
    machine.addDouble(kCoreSettings, u"Sys_v01", 99.0); // no leading zeros
    const auto core = start();
    EXPECT_EQ(section().get<std::uint64_t>(place::variable(18)), kNoValueBits);
    EXPECT_EQ(section().get<std::uint8_t>(place::flag(34)), 0);
    EXPECT_EQ(section().get<std::int32_t>(place::integer(11)), 0);
    EXPECT_EQ(section().get<double>(place::variable(1)), 15.8);
}

TEST_F(CoreCreation, VariableOfAnotherTypeOrSizeIsIgnored) {
    machine.addBytes(kCoreSettings, u"Sys_v3", platform::SettingsType::Binary, std::string(4, '\x40'));
    machine.addDword(kCoreSettings, u"Sys_v4", 7);
    machine.addBytes(kCoreSettings, u"Sys_v6", platform::SettingsType::Binary, std::string(16, '\x40'));
    machine.addString(kCoreSettings, u"Sys_v7", u"abc"); // 8 bytes with its terminator, yet a string
    const auto core = start();
    EXPECT_EQ(section().get<double>(place::variable(3)), 0.0);
    EXPECT_EQ(section().get<double>(place::variable(4)), 3.0);
    EXPECT_EQ(section().get<double>(place::variable(6)), 1.0);
    EXPECT_EQ(section().get<double>(place::variable(7)), 10.0);
}

TEST_F(CoreCreation, VariablesPassThroughTheirSetter) {
    machine.addDouble(kCoreSettings, u"Sys_v0", 0.5);
    machine.addDouble(kCoreSettings, u"Sys_v5", 50.0);
    machine.addDouble(kCoreSettings, u"Sys_v1", -3.0);
    const auto core = start();
    EXPECT_EQ(section().get<double>(place::variable(0)), 1.0);
    EXPECT_EQ(section().get<double>(place::variable(5)), 10.0);
    EXPECT_EQ(section().get<double>(place::variable(1)), -3.0);
}

TEST_F(CoreCreation, FlagBecomesOneForAnyOtherNumberThanZero) {
    machine.addDword(kCoreSettings, u"Sys_b5", 7);
    machine.addDword(kCoreSettings, u"Sys_b6", 0x100); // no low byte
    machine.addDword(kCoreSettings, u"Sys_b0", 0);
    machine.addString(kCoreSettings, u"Sys_b1", u"0"); // another type: the default, which is 1
    machine.addString(kCoreSettings, u"Sys_b2", u"1");
    const auto core = start();
    EXPECT_EQ(section().get<std::uint8_t>(place::flag(5)), 1);
    EXPECT_EQ(section().get<std::uint8_t>(place::flag(6)), 1);
    EXPECT_EQ(section().get<std::uint8_t>(place::flag(0)), 0);
    EXPECT_EQ(section().get<std::uint8_t>(place::flag(1)), 1);
    EXPECT_EQ(section().get<std::uint8_t>(place::flag(2)), 0);
}

TEST_F(CoreCreation, IntegersPassThroughTheirSetterOnlyWhenRead) {
    machine.addDword(kCoreSettings, u"Sys_i1", 9);
    machine.addDword(kCoreSettings, u"Sys_i3", 0xFFFFFFFF);
    machine.addDword(kCoreSettings, u"Sys_i10", 0xFFFFFFFD);
    machine.addString(kCoreSettings, u"Sys_i6", u"3");
    auto core = start();
    EXPECT_EQ(section().get<std::int32_t>(place::integer(1)), 2);
    EXPECT_EQ(section().get<std::int32_t>(place::integer(3)), 0);
    EXPECT_EQ(section().get<std::int32_t>(place::integer(10)), -3);
    EXPECT_EQ(section().get<std::int32_t>(place::integer(6)), 5); // ill-typed: as initialised
    core.reset();
    machine.addDword(kCoreSettings, u"Sys_i6", 9);
    core = start();
    EXPECT_EQ(section().get<std::int32_t>(place::integer(6)), 4);
}

// --- paths

TEST_F(CoreCreation, DataFolderThatDoesNotExistIsIgnoredAndNotMade) {
    machine.addString(kCoreSettings, u"DataFolder", u"D:\\Nowhere");
    const auto core = start();
    EXPECT_TRUE(section().text(place::kDataFolder, 260) == u"C:\\ProgramData\\Tallowmere");
    EXPECT_EQ(machine.files.count(u"D:\\Nowhere"), 0U);
}

TEST_F(CoreCreation, DataFolderMayBeAnyExistingObject) {
    machine.addFile(u"D:\\thing", "a file");
    machine.addString(kCoreSettings, u"DataFolder", u"D:\\thing");
    const auto core = start();
    EXPECT_TRUE(section().text(place::kDataFolder, 260) == u"D:\\thing");
}

TEST_F(CoreCreation, EmptyDataFolderIsIgnored) {
    machine.addString(kCoreSettings, u"DataFolder", u"");
    const auto core = start();
    EXPECT_TRUE(section().text(place::kDataFolder, 260) == u"C:\\ProgramData\\Tallowmere");
}

TEST_F(CoreCreation, LongPathsAreCutAt259Characters) {
    const std::u16string folder = u"D:\\" + std::u16string(297, u'r');
    machine.addFile(folder + u"\\there", "");
    machine.addString(kCoreSettings, u"DataFolder", folder);
    machine.addString(kCoreSettings, u"Database2", u"E:\\" + std::u16string(297, u'd'));
    machine.addString(kCoreSettings, u"MarksXml", u"F:\\" + std::u16string(297, u'M'));
    const auto core = start();
    const RawSection raw = section();
    EXPECT_TRUE(raw.text(place::kDataFolder, 260) == folder.substr(0, 259));
    EXPECT_TRUE(raw.text(place::kDatabasePath, 260) == u"E:\\" + std::u16string(256, u'd'));
    EXPECT_TRUE(raw.text(place::kMarksPath, 260) == u"f:\\" + std::u16string(256, u'm'));
    EXPECT_EQ(raw.get<char16_t>(544), u'\0'); // the field behind the marks path
    EXPECT_EQ(raw.get<char16_t>(1648), u'\0');
}

TEST_F(CoreCreation, EmptyDatabaseIsTakenAndEmptyMarksAreNot) {
    machine.addString(kCoreSettings, u"Database2", u"");
    machine.addString(kCoreSettings, u"MarksXml", u"");
    const auto core = start();
    EXPECT_TRUE(section().text(place::kDatabasePath, 260).empty());
    EXPECT_TRUE(section().text(place::kMarksPath, 260).empty()); // left as it was: empty
}

TEST_F(CoreCreation, DefaultPathsLieInTheUsersDataFolder) {
    machine.addFile(u"D:\\Race\\there", "");
    machine.addString(kCoreSettings, u"DataFolder", u"D:\\Race");
    const auto core = start();
    EXPECT_TRUE(section().text(place::kDatabasePath, 260) == u"D:\\Race\\database\\Tallowmere.db");
    EXPECT_TRUE(section().text(place::kMarksPath, 260) == u"d:\\race\\marks.xml");
    EXPECT_EQ(machine.files.count(u"C:\\ProgramData\\Tallowmere"), 1U); // made before the setting was read
}

TEST_F(CoreCreation, MarksPathKeepsItsLettersWhereTheirCaseMatters) {
    machine.caseSensitive = true;
    machine.addString(kCoreSettings, u"MarksXml", u"D:\\Race\\MARKS.XML");
    auto core = start();
    EXPECT_TRUE(section().text(place::kMarksPath, 260) == u"D:\\Race\\MARKS.XML");
    core.reset();
    machine.settings.clear();
    core = start();
    EXPECT_TRUE(section().text(place::kMarksPath, 260) == u"C:\\ProgramData\\Tallowmere\\marks.xml");
}

TEST_F(CoreCreation, WithoutAProgramDataFolderThePathsAreRelative) {
    machine.failAlways(Step::ProgramDataFolder);
    const auto core = start();
    EXPECT_TRUE(section().text(place::kDataFolder, 260).empty());
    EXPECT_TRUE(section().text(place::kDatabasePath, 260) == u"\\database\\Tallowmere.db");
    EXPECT_TRUE(section().text(place::kMarksPath, 260) == u"\\marks.xml");
    EXPECT_TRUE(core->setupDone());
}

} // namespace
} // namespace tallowmere::test
