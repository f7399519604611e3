// Where a recorder puts what it sees.
#pragma once

#include "tools/record/recording.hpp"

#include <cstdint>
#include <memory>
#include <string>

namespace tallowmere::recording {

/// Every function but bytes() and error() answers false when the file can't take it; error() then says why, and
/// the writer is of no more use.
class RecordingWriter {
  public:
    virtual ~RecordingWriter() = default;
    RecordingWriter(const RecordingWriter&) = delete;
    RecordingWriter& operator=(const RecordingWriter&) = delete;

    [[nodiscard]] virtual bool begin(const Session& session) = 0;
    /// A channel of which values will come. Again in the same session: its description has changed.
    [[nodiscard]] virtual bool describe(const ChannelInfo& channel) = 0;
    /// A boat of which values will come.
    [[nodiscard]] virtual bool describe(const BoatInfo& boat) = 0;
    [[nodiscard]] virtual bool add(const Value& value) = 0;
    /// The session is over.
    [[nodiscard]] virtual bool end(std::int64_t time) = 0;
    /// Returns when all that was added stands on the disk.
    [[nodiscard]] virtual bool commit() = 0;
    /// Closes the file. Nothing can be added after it.
    [[nodiscard]] virtual bool close() = 0;

    /// Size of the file, as far as it is written.
    [[nodiscard]] virtual std::uint64_t bytes() const = 0;
    [[nodiscard]] virtual std::string error() const = 0;

  protected:
    RecordingWriter() = default;
};

struct OpenedWriter {
    std::unique_ptr<RecordingWriter> writer; // null: see error
    std::string error;
};

/// Makes an SQLite database, or opens one that is a recording to add to it. path in UTF-8
[[nodiscard]] OpenedWriter openSqliteWriter(const std::string& path);
/// Makes a CSV file; one that is there is left alone.
[[nodiscard]] OpenedWriter openCsvWriter(const std::string& path);

} // namespace tallowmere::recording
