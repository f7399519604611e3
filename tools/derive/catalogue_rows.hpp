// The rows of the catalogue for the program that prints the derived files.
//
// Stands on catalogue.def alone: catalogue.hpp holds the derived constants against the rows and would not
// compile while they are out of date, which is when this program is needed.
#pragma once

#include "core/channels/unit_class.hpp"

#include <array>
#include <string>

namespace tallowmere::derive {

struct Row {
    int index;
    const char* constant; // without the prefix ZAN_
    int compactSlot;      // 32767: none
    int minValue;
    int maxValue;
    int timeoutSeconds;
    int decimals; // 255: none
    UnitClass unitClass;
    bool ownBoatProtected;
    bool dampable;
    bool logged;
    bool sensor;
    const char16_t* shortName;
    const char16_t* longName;
};

inline constexpr Row kRows[] = {
#define CHANNEL(index, name, compact, min, max, stale, prec, class, own, damp, log, sensor, shortName, longName)       \
    Row{index,    #name,     compact,  min,         max,       stale,   prec, UnitClass::class,                        \
        own != 0, damp != 0, log != 0, sensor != 0, shortName, longName},
#include "core/channels/catalogue.def"
#undef CHANNEL
};

/// include/tallowmere/channels.h
[[nodiscard]] std::string constantsHeader();
/// docs/channels.md
[[nodiscard]] std::string channelTable();
/// bindings/python/tallowmere/channel_ids.py
[[nodiscard]] std::string pythonConstants();
/// bindings/node/lib/channel_ids.js
[[nodiscard]] std::string nodeConstants();
/// bindings/node/lib/channel_ids.d.ts
[[nodiscard]] std::string nodeTypes();

} // namespace tallowmere::derive
