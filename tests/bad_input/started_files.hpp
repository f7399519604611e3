// A host's files, each good or bad, and what a start makes of them.
#pragma once

#include "core/ccore.hpp"
#include "settings/reg_ex.hpp"
#include "tests/channels/raw_section.hpp"
#include "tests/support/host_machine.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace tallowmere::test {

/// The files that the library reads, below the data folder, with contents that show when they were read.
struct GoodFile {
    const char* path;
    const char* content;
};
inline constexpr GoodFile kGoodFiles[] = {
    {"config/boats.xml", "<boats><boat id=\"3\" name=\"Falcon\"/></boats>\n"},
    {"config/channels.xml", "<channels><channel id=\"180\" user=\"Keel depth\"/></channels>\n"},
    {"config/alternate.csv", "0,1,2,3,4,5,6,7,8,9\n"},
    {"calibration/ZAN_CAL_Hdg.txt", "0\n0 3\n"},
    {"calibration/ZAN_CAL_Bsp.txt", "0\n0 2\n"},
};
inline constexpr std::size_t kFiles = std::size(kGoodFiles);

/// Which of the files a start has read: boats, channels, alternate table, heading, boat speed.
struct Taken {
    bool file[kFiles] = {};
    bool foreign = false; // something that stands in no file and is no default
    friend bool operator==(const Taken&, const Taken&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Taken& taken) {
        for (const bool each : taken.file) out << (each ? '1' : '0');
        return out << (taken.foreign ? " and foreign" : "");
    }
};

class FilesTest : public ::testing::Test {
  protected:
    FilesTest() {
        for (const std::size_t item : {2U, 8U})
            machine.set(kCalibrationKey, indexedName(u"CalUse_", item), 4, std::string("\1\0\0\0", 4));
        for (const GoodFile& file : kGoodFiles) write(file.path, file.content);
    }

    [[nodiscard]] std::filesystem::path path(const char* file) const { return machine.folder() / file; }
    void write(const char* file, const std::string& bytes) const {
        std::ofstream(path(file), std::ios::binary) << bytes;
    }
    static Taken startHost() {
        const auto core = std::make_unique<CCore>(true);
        EXPECT_TRUE(core->madeSection());
        return takenBy(*core);
    }
    static Taken takenBy(CCore& core) {
        Taken taken;
        if (core.area() == nullptr) return taken;
        const RawSection raw(reinterpret_cast<std::byte*>(core.area()));
        const auto take = [&taken](std::size_t which, bool users, bool byDefault) {
            taken.file[which] = users;
            taken.foreign |= !users && !byDefault;
        };
        const std::u16string boat = raw.text(place::boatName(3), 32);
        take(0, boat == u"Falcon", boat == u"Boat 3");
        const std::u16string name = raw.text(place::longName(180), 32);
        take(1, name == u"Keel depth", name.empty());
        const auto cell = raw.get<std::int32_t>(place::alternateCell(0, 0));
        take(2, cell == 1, cell == 32767);
        const auto stored = [&](ChannelIndex channel) {
            core.values().store(channel, Record::ofNumber(100.0), 1, kNoTime);
            return core.values().fetch(channel, 1).record.number();
        };
        take(3, stored(13) == 103.0, stored(13) == 100.0);
        take(4, stored(1) == 102.0, stored(1) == 100.0);
        return taken;
    }
    /// All files but one, or all.
    static Taken allBut(std::size_t missing) {
        Taken taken;
        for (std::size_t i = 0; i < kFiles; ++i) taken.file[i] = i != missing;
        return taken;
    }

    HostMachine machine;
};

} // namespace tallowmere::test
