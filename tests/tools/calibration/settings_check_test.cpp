#include "tests/tools/calibration/calibration_command_fixture.hpp"

namespace tallowmere::test {
namespace {

using platform::SettingsType;

class SettingsCheck : public CalibrationCommandTest {};

TEST_F(SettingsCheck, ProperValuesAreNoProblem) {
    machine.addString(kCoreKey, u"DataFolder", u"C:\\ProgramData");
    machine.addString(kCoreKey, u"Database2", u"C:\\x\\boat.db");
    machine.addString(kCoreKey, u"MarksXml", u"C:\\x\\marks.xml");
    machine.addDouble(kCoreKey, u"Sys_v0", 12.5);
    machine.addDword(kCoreKey, u"Sys_b3", 1);
    machine.addDword(kCoreKey, u"Sys_i6", 4);
    machine.addDword(kCalibrationKey, u"CalUse_2", 0);
    EXPECT_EQ(check(), "");
}

TEST_F(SettingsCheck, WhatTheSettingsTextHoldsInVainIsToldFirst) {
    settingsComplaints = {{u"/home/registry.reg", 7, "is neither a key nor a value", "the line is ignored"}};
    machine.addDword(kCoreKey, u"Sys_b1", 2);
    EXPECT_EQ(check(), "/home/registry.reg:7: is neither a key nor a value; the line is ignored\n"
                       "core\\Sys_b1: is 2, not 0 or 1; it counts as 1\n");
}

TEST_F(SettingsCheck, NumbersThatNoSettingHasAreTold) {
    machine.addDword(kCoreKey, u"Sys_b33", 1);
    machine.addDword(kCoreKey, u"sys_B34", 1);
    machine.addDword(kCoreKey, u"Sys_i", 1);
    machine.addDouble(kCoreKey, u"Sys_v018", 1);
    machine.addDword(kCoreKey, u"WindowLeft", 1); // another program's
    machine.addDword(kCalibrationKey, u"CalUse_20", 1);
    EXPECT_EQ(check(), "core\\Sys_i: is not one of 0 to 10; it is ignored\n"
                       "core\\Sys_v018: is not one of 0 to 17; it is ignored\n"
                       "core\\sys_B34: is not one of 0 to 33; it is ignored\n"
                       "tallowmere\\calibration\\CalUse_20: is not one of 0 to 19; it is ignored\n");
}

TEST_F(SettingsCheck, WrongTypesAndSizesAreTold) {
    machine.addDword(kCoreKey, u"DataFolder", 1);
    machine.addDword(kCoreKey, u"Sys_v1", 1);
    machine.addBytes(kCoreKey, u"Sys_v2", SettingsType::Binary, "abcd");
    machine.addString(kCoreKey, u"Sys_b0", u"1");
    machine.addBytes(kCoreKey, u"Sys_i1", SettingsType::Dword, std::string(2, '\1'));
    machine.addBytes(kCoreKey, u"MarksXml", SettingsType::String, "abc");
    machine.addString(kCalibrationKey, u"CalUse_3", u"1");
    machine.addBytes(kCalibrationKey, u"CalLinear_19", SettingsType::Dword, std::string(2, '\1'));
    EXPECT_EQ(check(),
              "core\\DataFolder: is a number (REG_DWORD), not a string (REG_SZ); it is ignored\n"
              "core\\MarksXml: has 3 bytes, an odd number for a string; it is ignored\n"
              "core\\Sys_v1: is a number (REG_DWORD), not binary (REG_BINARY); it is ignored\n"
              "core\\Sys_v2: has 4 bytes, not the 8 of a double; it is ignored\n"
              "core\\Sys_b0: is a string (REG_SZ), not a number (REG_DWORD); it is ignored\n"
              "core\\Sys_i1: has 2 bytes, not the 4 of a number; it is extended with zeros\n"
              "core\\Sys_i1: is 257; it is held at 2\n"
              "tallowmere\\calibration\\CalUse_3: is a string (REG_SZ), not a number (REG_DWORD); it is ignored\n"
              "tallowmere\\calibration\\CalLinear_19: has 2 bytes, not the 4 of a number; it is ignored\n");
}

TEST_F(SettingsCheck, ValuesThatAreHeldAreTold) {
    machine.addDouble(kCoreKey, u"Sys_v0", 0.5);
    machine.addDouble(kCoreKey, u"Sys_v5", 11);
    machine.addDword(kCoreKey, u"Sys_b1", 2);
    machine.addDword(kCoreKey, u"Sys_i0", 0xFFFFFFFFU);
    machine.addDword(kCoreKey, u"Sys_i6", 5);
    EXPECT_EQ(check(), "core\\Sys_v0: is 0.5; it is held at 1\n"
                       "core\\Sys_v5: is 11; it is held at 10\n"
                       "core\\Sys_b1: is 2, not 0 or 1; it counts as 1\n"
                       "core\\Sys_i0: is -1; it is held at 0\n"
                       "core\\Sys_i6: is 5; it is held at 4\n");
}

TEST_F(SettingsCheck, PathsAreJudged) {
    machine.addString(kCoreKey, u"DataFolder", u"D:\\none");
    machine.addString(kCoreKey, u"Database2", u"D:\\boat.DB");
    machine.addString(kCoreKey, u"MarksXml", std::u16string(300, u'm'));
    machine.addString(kCalibrationKey, u"CalFile_2", u"D:\\none.txt");
    machine.addDword(kCalibrationKey, u"CalUse_0", 0);
    EXPECT_EQ(check(),
              "core\\DataFolder: \"D:\\none\" does not exist; the default folder is used\n"
              "core\\Database2: \"D:\\boat.DB\" does not end in \".db\"; the default database is used\n"
              "core\\MarksXml: has 300 characters; it is cut after 259\n"
              "tallowmere\\calibration\\CalUse_0: switches the rate of turn off; it stays in use all the same\n"
              "tallowmere\\calibration\\CalFile_2: \"D:\\none.txt\" does not exist; the item's table is empty and "
              "gives no correction\n");
}

TEST_F(SettingsCheck, NothingIsChangedByLooking) {
    machine.addString(kCoreKey, u"DataFolder", u"D:\\none");
    const auto files = machine.files;
    (void)run({"check"});
    (void)run({"calibration", "list"});
    EXPECT_EQ(machine.files, files);
    EXPECT_EQ(machine.settings.size(), 1U);
    EXPECT_FALSE(sectionExists());
}

} // namespace
} // namespace tallowmere::test
