// State of the core object that nothing in this library uses.
//
// The programs built on the core give it its meaning; kept here, in one place, with the initial values
// that they rely on.
#pragma once

#include "core/channels/shared_area.hpp"

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace tallowmere {

struct ReservedState {
    struct Sample {
        double a = NO_VALUE;
        double b = NO_VALUE;
        std::int64_t time = kNoTime;
    };
    struct Row {
        double a = NO_VALUE;
        double b = NO_VALUE;
        std::int64_t c = 0;
        std::int64_t d = 0;
        double e = NO_VALUE;
        double f = NO_VALUE;
        std::uint8_t g = 0;
    };
    struct RowTable {
        std::int32_t count = 0;
        std::array<Row, 182> rows{};
    };
    struct OwnedTable {
        std::uint8_t active = 0;
        std::vector<double> contents;
    };
    struct CloseFile {
        void operator()(std::FILE* file) const noexcept { (void)std::fclose(file); } // writes out what is buffered
    };

    // A block of small scalars.
    std::int32_t scalar0 = 2;
    std::array<std::uint64_t, 2> words{};
    std::array<std::uint8_t, 48> bytes{};
    std::int32_t scalar1 = -1;
    std::int32_t scalar2 = 0;
    std::uint8_t byte = 0;
    std::int32_t scalar3 = 0;
    std::int64_t time = kNoTime;
    std::int32_t scalar4 = 0;
    std::vector<std::int32_t> container;

    std::array<std::array<Sample, 32>, 4> samples{};

    std::u16string text0;
    std::uint8_t flag0 = 0;
    std::string narrowText;
    std::u16string text1;

    OwnedTable activeTable{1, {}};
    OwnedTable inactiveTable{0, {}};

    std::int64_t laterTime = kNoTime;
    std::u16string outputName;
    std::unique_ptr<std::FILE, CloseFile> output; // a narrow output stream, not open

    std::array<RowTable, 2> rowTables{};
    std::array<std::int32_t, 4> integers{32767, 32767, 32767, 32767};
};

} // namespace tallowmere
