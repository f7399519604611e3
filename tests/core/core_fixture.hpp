// Core objects on an in-memory machine: one machine, any number of processes.
#pragma once

#include "core/ccore.hpp"
#include "tests/channels/raw_section.hpp"
#include "tests/support/memory_platform.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace tallowmere::test {

inline constexpr char16_t kSectionName[] = u"ZanCore_363_253336";
inline constexpr char16_t kCoreSettings[] = u"Software\\Tallowmere\\core";
inline constexpr char16_t kTrackSettings[] = u"Software\\Tallowmere\\tallowmere\\settings";

class CoreTest : public ::testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<CCore> start() { return std::make_unique<CCore>(platform, false); }
    /// The living section. Fails the test where there is none.
    [[nodiscard]] RawSection section() const {
        EXPECT_NE(machine.section(kSectionName), nullptr);
        return RawSection(machine.section(kSectionName));
    }
    [[nodiscard]] bool sectionLives() const { return machine.section(kSectionName) != nullptr; }
    [[nodiscard]] bool asked(const std::string& step) const {
        return std::find(machine.trace.begin(), machine.trace.end(), step) != machine.trace.end();
    }

    MemoryMachine machine;
    MemoryPlatform platform{machine};
};

/// Bytes of the clock channel, which every start stamps.
inline void copyClock(const std::vector<std::uint8_t>& from, std::vector<std::uint8_t>& to) {
    const auto copy = [&](std::size_t offset) {
        std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(offset), 8,
                    to.begin() + static_cast<std::ptrdiff_t>(offset));
    };
    for (std::size_t boat = 0; boat < 2; ++boat) {
        copy(place::fullStamp(0, boat));
        copy(place::fullValue(0, boat) + 8);
        copy(place::fullSecond(0, boat) + 8);
        copy(place::fullThird(0, boat) + 8);
    }
}

// A machine whose user has set everything there is to set.

inline constexpr std::int32_t kUsersIntegers[11] = {11, 1, 2, 3, 4, 1, 3, 17, 1, 2, -7};
constexpr double usersVariable(std::size_t index) {
    return index == 5 ? 7.25 : 20.5 + static_cast<double>(index);
}
constexpr bool flagIsSetAtFirst(std::size_t index) {
    return index == 0 || index == 1 || index == 3 || index == 7 || index == 21 || index == 40 || index == 41 ||
           index == 42;
}

inline std::u16string numbered(std::u16string_view prefix, std::size_t index) {
    const std::string digits = std::to_string(index);
    return std::u16string(prefix) + std::u16string(digits.begin(), digits.end());
}

inline void addUsersSettings(MemoryMachine& machine) {
    machine.addString(kCoreSettings, u"DataFolder", u"D:\\Race");
    machine.addString(kCoreSettings, u"Database2", u"E:\\Season.db");
    machine.addString(kCoreSettings, u"MarksXml", u"D:\\Race\\MARKS.XML");
    for (std::size_t i = 0; i < 18; ++i) machine.addDouble(kCoreSettings, numbered(u"Sys_v", i), usersVariable(i));
    for (std::size_t i = 0; i < 34; ++i)
        machine.addDword(kCoreSettings, numbered(u"Sys_b", i),
                         flagIsSetAtFirst(i) ? 0 : static_cast<std::uint32_t>(i + 1));
    for (std::size_t i = 0; i < 11; ++i)
        machine.addDword(kCoreSettings, numbered(u"Sys_i", i), static_cast<std::uint32_t>(kUsersIntegers[i]));
}

inline void addUsersFiles(MemoryMachine& machine) {
    machine.addFile(u"D:\\Race\\config\\boats.xml",
                    "<boats><boat id=\"3\" name=\"Falcon\" mmsi=\"235000001\" r=\"255\" g=\"0\" b=\"0\"/></boats>");
    machine.addFile(u"D:\\Race\\config\\channels.xml",
                    "<channels><channel id=\"5\" log=\"false\" damp=\"7\" prec=\"3\"/>"
                    "<channel id=\"180\" type=\"3\" user=\"Keel depth\"/></channels>");
    machine.addFile(u"D:\\Race\\config\\alternate.csv", "0,1,2,3,4,5,6,7,8,9\n9,10,11,12,13,14,15,16,17,18\n");
}

} // namespace tallowmere::test
