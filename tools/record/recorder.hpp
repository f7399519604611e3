// What stands in the section, as rows for a writer: each value when its stamp or its bits have changed.
#pragma once

#include "tools/record/recording_writer.hpp"
#include "view/section_reader.hpp"
#include "view/value_look.hpp"

#include <bitset>
#include <string>
#include <vector>

namespace tallowmere::recording {

struct Selection {
    std::vector<ChannelIndex> channels; // recordable ones; none: those whose log flag is set
    std::vector<BoatIndex> boats;       // none: all that are in use
};

struct RecordCounts {
    std::uint64_t rows = 0;
    std::size_t boats = 0;   // of which there was something to record
    std::int64_t newest = 0; // time of the latest row, 100 ns since 1601-01-01 UTC; 0: none yet
};

/// Looks at sections, of which it never makes one, and writes nothing into them. One thread.
class Recorder {
  public:
    /// All must outlive the recorder.
    Recorder(platform::Platform& platform, RecordingWriter& writer, Selection selection, std::string program);

    /// Looks once at everything. A section that is new begins a session, one that has gone ends it with a row without
    /// value for each that was there. A replay is a session of its own, with the sign behind the program's name.
    /// False when the writer failed.
    [[nodiscard]] bool look();
    /// Ends the session, if there is one. False when the writer failed.
    [[nodiscard]] bool finish();

    [[nodiscard]] bool attached() const noexcept { return section_.area() != nullptr; }
    /// What is recorded is played from a recording.
    [[nodiscard]] bool replay() const noexcept { return replay_; }
    [[nodiscard]] const RecordCounts& counts() const noexcept { return counts_; }

  private:
    struct Last {
        std::int64_t stamp = kNoTime;
        StorageKind kind = StorageKind::Double;
        std::optional<std::uint64_t> payload;
        friend bool operator==(const Last&, const Last&) = default;
    };

    bool begin();
    bool leave();
    void chooseChannels(const SharedArea& area);
    bool lookAt(const SharedArea& area, BoatIndex boat);
    bool take(const SharedArea& area, BoatIndex boat, const tlm_view_value& value);
    bool add(const SharedArea* area, BoatIndex boat, ChannelIndex channel, const Last& last, std::int64_t time);

    platform::Platform& platform_;
    RecordingWriter& writer_;
    Selection selection_;
    std::string program_;
    SectionReader section_;
    std::uint32_t session_ = 0; // the generation of the section that is recorded; 0: none
    bool replay_ = false;
    std::int64_t now_ = 0;
    std::int64_t chosen_ = 0; // when the log flags were read
    std::vector<ChannelIndex> channels_;
    std::vector<ChannelIndex> compactChannels_; // of these, those that boats 2 to 99 keep
    std::vector<tlm_view_value> values_;
    std::vector<Last> last_;
    std::bitset<kChannelCount> described_;
    std::bitset<kBoatCount> boatsDescribed_;
    std::bitset<kBoatCount> boatsSeen_; // in any session
    RecordCounts counts_;
};

} // namespace tallowmere::recording
