// Runs the program's commands in this process, on a machine in memory.
#pragma once

#include "core/ccore.hpp"
#include "tests/support/memory_platform.hpp"
#include "tools/commands/program.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <bit>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace tallowmere::test {

struct CommandRun {
    int code;
    std::string out;
    std::string err;
};

class CommandTest : public ::testing::Test {
  protected:
    CommandRun run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "tallowmere");
        std::ostringstream out;
        std::ostringstream err;
        tools::CommandContext context{platform, out, err, stop, terminal, [this] { return columns; }};
        context.settingsComplaints = [this] { return settingsComplaints; };
        const int code = tools::runProgram(context, arguments);
        return {code, out.str(), err.str()};
    }

    /// Another program that holds the section.
    CCore& holder() {
        if (!holder_) holder_.emplace(platform, false);
        return *holder_;
    }
    /// That program ends.
    void letGo() { holder_.reset(); }
    SharedArea& area() { return *holder().area(); }
    void store(ChannelIndex channel, double value, BoatIndex boat = 0) {
        ValueStore& values = holder().values();
        values.store(channel, values.doubleToRecord(channel, value).record, boat, kNoTime);
    }
    void passSeconds(double seconds) { machine.now += static_cast<std::int64_t>(seconds * 1e7); }
    bool sectionExists() { return machine.section(sectionName()) != nullptr; }

    MemoryMachine machine;
    MemoryPlatform platform{machine};
    std::atomic<bool> stop{false};
    bool terminal = false;
    int columns = 80;
    std::vector<platform::SettingsComplaint> settingsComplaints;

  private:
    std::optional<CCore> holder_;
};

/// No byte but line ends and tabs that a terminal would take for more than a character.
inline bool isHarmless(const std::string& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F) return false;
        if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0) return false; // C1
    }
    return true;
}

/// Fills every byte of a section with noise that is the same in each run.
inline void fillWithNoise(SharedArea& area, std::uint64_t seed) {
    auto* const bytes = reinterpret_cast<unsigned char*>(&area);
    for (std::size_t i = 0; i < sizeof area; ++i) {
        seed = seed * 6364136223846793005U + 1442695040888963407U;
        bytes[i] = static_cast<unsigned char>(seed >> 56);
    }
}

} // namespace tallowmere::test
