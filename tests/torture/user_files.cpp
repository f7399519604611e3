#include "tests/torture/user_files.hpp"

#include "core/channels/shared_area.hpp"

#include <algorithm>
#include <fstream>

namespace tallowmere::torture {
namespace {

constexpr unsigned kVariables = 18;
constexpr unsigned kFlags = 34;
constexpr unsigned kIntegers = 11;

/// A name, an MMSI and a colour for every boat: 8 KB.
void writeBoats(std::ostream& file) {
    file << "<boats>\n";
    for (unsigned boat = 0; boat < kBoatCount; ++boat)
        file << "  <boat id=\"" << boat << "\" name=\"Competitor " << boat << "\" mmsi=\"" << 235'000'000 + boat
             << "\" r=\"" << 2 * boat << "\" g=\"100\" b=\"0\"/>\n";
    file << "</boats>\n";
}

/// Logging, damping and decimals for every channel, and names for those that take one: 27 KB.
void writeChannels(std::ostream& file) {
    file << "<channels>\n";
    for (unsigned channel = 1; channel < kChannelCount; ++channel)
        file << "  <channel id=\"" << channel << "\" log=\"true\" damp=\"2\" prec=\"1\" user=\"Mine " << channel
             << "\"/>\n";
    file << "</channels>\n";
}

void writeAlternates(std::ostream& file) {
    file << "! row, nine channels\n";
    for (std::size_t row = 0; row < kAlternateRows; ++row) {
        file << row;
        for (std::size_t column = 0; column < kAlternateColumns; ++column) file << ", " << kLastAlternate;
        file << '\n';
    }
}

} // namespace

std::vector<UserSetting> userSettings() {
    std::vector<UserSetting> settings;
    for (unsigned i = 0; i < kVariables; ++i) settings.push_back({"Sys_v" + std::to_string(i), std::min(i + 1.5, 9.5)});
    // Of the flags none that has values computed or corrected.
    for (unsigned i = 0; i < kFlags; ++i) settings.push_back({"Sys_b" + std::to_string(i), i < 8 ? 1U : 0U});
    for (unsigned i = 0; i < kIntegers; ++i) settings.push_back({"Sys_i" + std::to_string(i), 1U});
    return settings;
}

void writeUserFiles(const std::filesystem::path& dataFolder) {
    const std::filesystem::path folder = dataFolder / "config";
    std::filesystem::create_directories(folder);
    std::ofstream boats(folder / "boats.xml");
    writeBoats(boats);
    std::ofstream channels(folder / "channels.xml");
    writeChannels(channels);
    std::ofstream alternates(folder / "alternate.csv");
    writeAlternates(alternates);
}

} // namespace tallowmere::torture
