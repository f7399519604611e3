// Recording and playing on a machine in memory; the files are real, in a folder of the test's own.
#pragma once

#include "tests/support/temporary_folder.hpp"
#include "tests/tools/cli/command_fixture.hpp"
#include "tools/record/recording_reader.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tallowmere::test {

inline constexpr std::int64_t kSecond = 10'000'000; // 100 ns

class RecordingTest : public CommandTest {
  protected:
    RecordingTest() {
        // Time passes while the program sleeps.
        machine.onSleep = [this](unsigned milliseconds) {
            machine.now += std::int64_t{milliseconds} * 10'000;
            if (whileAsleep) whileAsleep();
        };
    }

    [[nodiscard]] std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
    /// The machine in memory has its own files: a recording of rows is found there.
    void bringFile(const std::string& name) {
        std::ifstream file(path(name), std::ios::binary);
        machine.addFile(std::filesystem::path(path(name)).u16string(), {std::istreambuf_iterator<char>(file), {}});
    }
    void writeFile(const std::string& name, const std::string& bytes) {
        std::ofstream(path(name), std::ios::binary) << bytes;
        bringFile(name);
    }

    /// All that a recording has.
    struct Content {
        std::vector<recording::Session> sessions;
        std::vector<recording::Value> values;
        std::vector<recording::SessionEnd> ends;
        std::vector<recording::Damage> damages;
        std::string error;
    };
    Content contentOf(const std::string& name) {
        bringFile(name);
        Content content;
        const auto opened = recording::openRecording(platform, path(name), stop);
        content.error = opened.error;
        while (opened.reader) {
            const auto item = opened.reader->next();
            if (!item) break;
            if (const auto* const session = std::get_if<recording::Session>(&*item))
                content.sessions.push_back(*session);
            else if (const auto* const value = std::get_if<recording::Value>(&*item))
                content.values.push_back(*value);
            else if (const auto* const end = std::get_if<recording::SessionEnd>(&*item))
                content.ends.push_back(*end);
            else
                content.damages.push_back(std::get<recording::Damage>(*item));
        }
        if (opened.reader) content.error = opened.reader->error();
        return content;
    }

    /// A record as it is, with this stamp.
    void put(ChannelIndex channel, Record record, BoatIndex boat, std::int64_t stamp) {
        const auto slot = valueSlotOf(area(), channel, boat);
        writeOnce(*slot.stamp, stamp);
        storeRecord(*slot.current, record);
        if (readOnce(area().boatCount) <= boat) writeOnce(area().boatCount, boat + 1U);
    }

    std::function<void()> whileAsleep; // after the time has passed

  private:
    TemporaryFolder folder_;
};

} // namespace tallowmere::test
