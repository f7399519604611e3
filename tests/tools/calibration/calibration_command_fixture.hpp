// A machine in memory with a calibration, and the commands that look at it.
#pragma once

#include "settings/reg_ex.hpp"
#include "tests/tools/cli/command_fixture.hpp"

#include <gmock/gmock.h>

namespace tallowmere::test {

class CalibrationCommandTest : public CommandTest {
  protected:
    static std::u16string folder() { return u"C:\\ProgramData\\Tallowmere\\"; }
    static std::u16string calibrationPath(const std::u16string& item) {
        return folder() + u"calibration\\ZAN_CAL_" + item + u".txt";
    }
    void putItem(const std::u16string& item, std::string text) {
        machine.addFile(calibrationPath(item), std::move(text));
    }
    void putConfig(const std::u16string& name, std::string text) {
        machine.addFile(folder() + u"config\\" + name, std::move(text));
    }
    /// The problems of everything, with the folder left out of each.
    std::string check() {
        const CommandRun result = run({"check"});
        EXPECT_EQ(result.code, result.out.empty() ? 0 : 1);
        EXPECT_TRUE(isHarmless(result.out));
        std::string text = result.out;
        for (const std::string prefix :
             {"C:\\ProgramData\\Tallowmere\\calibration\\", "C:\\ProgramData\\Tallowmere\\config\\",
              "HKEY_CURRENT_USER\\Software\\Tallowmere\\"})
            for (std::size_t at = text.find(prefix); at != text.npos; at = text.find(prefix))
                text.erase(at, prefix.size());
        return text;
    }
};

} // namespace tallowmere::test
