// A recording read back, row by row.
//
// Whatever the file holds, each row is checked before it is given out: a channel below 414 that can be recorded, a
// boat below 100, a moment, a kind of its own with a payload that fits it. What fails is given out as damage.
#pragma once

#include "platform/platform.hpp"
#include "tools/record/recording.hpp"

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <variant>

namespace tallowmere::recording {

using Item = std::variant<Session, Value, SessionEnd, Damage>;

class RecordingReader {
  public:
    virtual ~RecordingReader() = default;
    RecordingReader(const RecordingReader&) = delete;
    RecordingReader& operator=(const RecordingReader&) = delete;

    /// The next in the order of recording; a session before its first value, its end after the last where the
    /// recording tells it. Empty at the end and where reading fails.
    [[nodiscard]] virtual std::optional<Item> next() = 0;
    /// Why reading ended before the end; else empty.
    [[nodiscard]] virtual std::string error() const = 0;
    /// Channels described so far; all of them from the start where the format has a list. Texts as they are in the
    /// file.
    [[nodiscard]] const std::map<ChannelIndex, ChannelInfo>& channels() const noexcept { return channels_; }

  protected:
    RecordingReader() = default;
    std::map<ChannelIndex, ChannelInfo> channels_;
};

struct OpenedReader {
    std::unique_ptr<RecordingReader> reader; // null: see error
    std::string error;
};

/// Opens a recording of either format, which its first bytes tell.
/// path   in UTF-8
/// stop   ends a read that takes long; must outlive the reader
[[nodiscard]] OpenedReader openRecording(platform::Platform& platform, const std::string& path,
                                         const std::atomic<bool>& stop);

[[nodiscard]] OpenedReader openSqliteReader(const std::string& path, const std::atomic<bool>& stop);
[[nodiscard]] std::unique_ptr<RecordingReader> readCsv(std::unique_ptr<platform::FileReader> file);

/// Checks the fields of a row, however they were kept; why they make no sense, or null.
[[nodiscard]] const char* problemOf(std::int64_t time, std::int64_t boat, std::int64_t channel) noexcept;

} // namespace tallowmere::recording
