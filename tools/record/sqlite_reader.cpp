#include "tools/record/database.hpp"
#include "tools/record/moment_text.hpp"
#include "tools/record/recording_reader.hpp"

#include <bit>
#include <deque>
#include <limits>

namespace tallowmere::recording {
namespace {

constexpr int kOperationsBetweenLooks = 10'000;

/// The row's payload by its kind; empty when what stands there is no value of that kind.
std::optional<std::uint64_t> payloadIn(const Statement& row, int column, StorageKind kind) {
    const int type = row.type(column);
    if (kind == StorageKind::Double) {
        if (type == SQLITE_FLOAT || type == SQLITE_INTEGER) return Record::ofNumber(row.number(column)).payload;
        if (type == SQLITE_TEXT && row.text(column) == "nan")
            return Record::ofNumber(std::numeric_limits<double>::quiet_NaN()).payload;
        return std::nullopt;
    }
    if (type != SQLITE_INTEGER) return std::nullopt;
    const std::int64_t number = row.integer(column);
    if (kind == StorageKind::Time) return Record::ofTicks(number).payload;
    const bool byte = kind == StorageKind::Byte;
    const std::int64_t lowest = byte ? 0 : std::numeric_limits<std::int32_t>::min();
    const std::int64_t highest = byte ? 255 : std::numeric_limits<std::int32_t>::max();
    if (number < lowest || number > highest) return std::nullopt;
    return byte ? static_cast<std::uint64_t>(number) : Record::ofInteger(static_cast<std::int32_t>(number)).payload;
}

class SqliteReader final : public RecordingReader {
  public:
    SqliteReader(const std::string& path, const std::atomic<bool>& stop)
        : database_(path, SQLITE_OPEN_READONLY), stop_(stop) {}

    /// Why the file can't be read, or empty.
    std::string prepare() {
        if (!database_.isOpen()) return database_.error();
        sqlite3_progress_handler(database_.get(), kOperationsBetweenLooks, isStopped, this);
        // Tables only: a file may call anything "value", such as a view that never ends.
        Statement tables(database_, "SELECT count(*) FROM sqlite_schema WHERE type = 'table' AND "
                                    "name IN ('recording', 'channel', 'boat', 'value') AND sql NOT LIKE '%VIRTUAL%'");
        if (!tables || !tables.step()) return database_.error();
        if (tables.integer(0) != 4 || number("PRAGMA application_id") != kApplicationId)
            return "it is a database, but no recording";
        if (number("PRAGMA user_version") != kFormat) return "it is a recording of another version of this program";
        if (!readSessions() || !readChannels()) return database_.error();
        rows_ = {database_, "SELECT id, recording, time, boat, channel, kind, value FROM value ORDER BY id"};
        return rows_ ? "" : database_.error();
    }

    std::optional<Item> next() override {
        if (held_.empty() && !done_) read();
        if (held_.empty()) return std::nullopt;
        Item item = std::move(held_.front());
        held_.pop_front();
        return item;
    }

    [[nodiscard]] std::string error() const override { return error_; }

  private:
    static int isStopped(void* reader) { return static_cast<SqliteReader*>(reader)->stop_ ? 1 : 0; }

    /// Holds the next row, with what has to come before it; nothing at the end.
    void read() {
        done_ = !rows_.step(); // a step after the last one would begin again
        if (done_) {
            const bool whole = rows_.result() == SQLITE_DONE;
            if (!whole && !stop_) error_ = database_.error();
            if (whole) holdEnd();
            return;
        }
        Item item = row();
        if (std::holds_alternative<Value>(item) && rows_.integer(1) != session_) {
            holdEnd();
            session_ = rows_.integer(1);
            const auto found = sessions_.find(*session_);
            held_.push_back(found != sessions_.end() ? found->second.session : Session{std::get<Value>(item).time, {}});
        }
        held_.push_back(std::move(item));
    }

    void holdEnd() {
        if (!session_) return;
        const auto found = sessions_.find(*session_);
        if (found != sessions_.end() && found->second.end) held_.push_back(*found->second.end);
        session_.reset();
    }

    std::optional<std::int64_t> number(const char* sql) const {
        Statement statement(database_, sql);
        return statement.step() ? std::optional(statement.integer(0)) : std::nullopt;
    }

    bool readSessions() {
        Statement rows(database_, "SELECT id, started, program, ended FROM recording");
        while (rows.step()) {
            if (!isMoment(rows.integer(1))) continue;
            Listed& listed = sessions_[rows.integer(0)];
            listed.session = {rows.integer(1), rows.text(2)};
            if (isMoment(rows.integer(3))) listed.end = SessionEnd{rows.integer(3)};
        }
        return rows.result() == SQLITE_DONE;
    }

    /// Of several descriptions of a channel the latest.
    bool readChannels() {
        Statement rows(database_, "SELECT number, name, long_name, unit, unit_class, timeout FROM channel "
                                  "ORDER BY recording");
        while (rows.step()) {
            const std::int64_t number = rows.integer(0);
            if (number < 0 || number >= static_cast<std::int64_t>(kChannelCount)) continue;
            const auto channel = static_cast<ChannelIndex>(number);
            channels_[channel] = {channel,
                                  rows.text(1),
                                  rows.text(2),
                                  rows.text(3),
                                  static_cast<UnitClass>(rows.integer(4)),
                                  static_cast<std::uint16_t>(rows.integer(5))};
        }
        return rows.result() == SQLITE_DONE;
    }

    [[nodiscard]] Item damaged(const char* why) const {
        return Damage{"row " + std::to_string(rows_.integer(0)) + " of the values", why};
    }

    [[nodiscard]] Item row() const {
        for (int column = 1; column <= 5; ++column)
            if (rows_.type(column) != SQLITE_INTEGER) return damaged("a field that must be an integer is none");
        const std::int64_t time = rows_.integer(2);
        const std::int64_t boat = rows_.integer(3);
        const std::int64_t channel = rows_.integer(4);
        const std::int64_t kind = rows_.integer(5);
        if (const char* const problem = problemOf(time, boat, channel)) return damaged(problem);
        if (kind < 0 || kind > static_cast<std::int64_t>(StorageKind::Time))
            return damaged("there is no such kind of value");
        Value value{time, static_cast<ChannelIndex>(channel), static_cast<BoatIndex>(boat),
                    static_cast<StorageKind>(kind), std::nullopt};
        if (rows_.type(6) == SQLITE_NULL) return value;
        value.payload = payloadIn(rows_, 6, value.kind);
        if (!value.payload) return damaged("its value is no number of its kind");
        return value;
    }

    struct Listed {
        Session session;
        std::optional<SessionEnd> end; // empty: cut short, or still recorded
    };

    Database database_;
    const std::atomic<bool>& stop_;
    Statement rows_;
    std::map<std::int64_t, Listed> sessions_;
    std::optional<std::int64_t> session_; // of the last value
    std::deque<Item> held_;               // to be given out next
    bool done_ = false;
    std::string error_;
};

} // namespace

OpenedReader openSqliteReader(const std::string& path, const std::atomic<bool>& stop) {
    auto reader = std::make_unique<SqliteReader>(path, stop);
    std::string error = reader->prepare();
    if (!error.empty()) return {nullptr, std::move(error)};
    return {std::move(reader), {}};
}

} // namespace tallowmere::recording
