// The fuzz targets by name. Each takes one input, any bytes at all, and ends the process when it finds
// something; nothing of one run is left for the next.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tallowmere::fuzz {

using Bytes = std::span<const std::uint8_t>;

void boats(Bytes input);       // config/boats.xml
void channels(Bytes input);    // config/channels.xml
void alternate(Bytes input);   // config/alternate.csv, against the C library's scanf
void calibration(Bytes input); // a calibration file, then its curves
void registry(Bytes input);    // the settings file of Linux
void nmea(Bytes input);        // a stream of NMEA 0183 and AIS into the section
void section(Bytes input);     // every call on a section with any bytes
void model(Bytes input);       // sequences of calls against a model
void view(Bytes input);        // the read-only view, on any file under the section's name

inline std::string_view textOf(Bytes bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace tallowmere::fuzz
