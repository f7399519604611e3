// A recording as an SQLite database. The schema is described in docs/recording.md.
#include "tools/calibration/file_names.hpp"
#include "tools/record/database.hpp"
#include "tools/record/recording_writer.hpp"

#include <cmath>
#include <filesystem>

namespace tallowmere::recording {
namespace {

// A value's column has no declared type: in a numeric one SQLite would turn 7.0 into 7 and lose the sign of -0.0.
constexpr char kSchema[] = R"(
CREATE TABLE recording (
    id INTEGER PRIMARY KEY,
    started INTEGER NOT NULL,       -- 100 ns since 1601-01-01 UTC
    ended INTEGER,                  -- likewise; NULL while it goes on, and when it was cut short
    program TEXT NOT NULL,          -- what recorded it, with its version
    boats INTEGER NOT NULL          -- how many boats it has values of
);
CREATE TABLE channel (
    recording INTEGER NOT NULL REFERENCES recording (id),
    number INTEGER NOT NULL,        -- 1 to 413
    name TEXT NOT NULL,
    long_name TEXT NOT NULL,
    unit TEXT NOT NULL,             -- of its values; empty where there is none
    unit_class INTEGER NOT NULL,
    timeout INTEGER NOT NULL,       -- seconds after which a value is stale; 0: never
    PRIMARY KEY (recording, number)
) WITHOUT ROWID;
CREATE TABLE boat (
    recording INTEGER NOT NULL REFERENCES recording (id),
    number INTEGER NOT NULL,        -- 0 to 99; 0 is the own boat
    name TEXT NOT NULL,
    mmsi INTEGER NOT NULL,          -- 0: none
    colour INTEGER NOT NULL,        -- red + 256 green + 65536 blue
    PRIMARY KEY (recording, number)
) WITHOUT ROWID;
CREATE TABLE value (
    id INTEGER PRIMARY KEY,         -- in the order of recording
    recording INTEGER NOT NULL REFERENCES recording (id),
    time INTEGER NOT NULL,          -- when it was written: 100 ns since 1601-01-01 UTC
    boat INTEGER NOT NULL,
    channel INTEGER NOT NULL,
    kind INTEGER NOT NULL,          -- 0 byte, 1 double, 2 integer, 3 time in 100 ns
    value                           -- NULL: no value from then on
);
CREATE INDEX value_time ON value (time);
CREATE VIEW reading AS
    SELECT strftime('%Y-%m-%dT%H:%M:%f', (v.time - 116444736000000000) / 1e7, 'unixepoch') || 'Z' AS utc,
           v.boat AS boat, c.name AS channel, v.value AS value, c.unit AS unit, v.id AS id
    FROM value v JOIN channel c ON c.recording = v.recording AND c.number = v.channel;
)";

class SqliteWriter final : public RecordingWriter {
  public:
    explicit SqliteWriter(const std::string& path)
        : database_(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE), path_(path) {}

    /// Makes the tables, or finds them; why the file can't be recorded into, or empty.
    std::string prepare() {
        if (!database_.isOpen()) return whyNotReady();
        const auto application = pragma("PRAGMA application_id");
        const auto format = pragma("PRAGMA user_version");
        if (!application || !format) return whyNotReady();
        const bool empty = pragma("SELECT count(*) FROM sqlite_schema") == 0 && *application == 0 && *format == 0;
        if (!empty && *application != kApplicationId) return "it is a database of another kind";
        if (!empty && *format != kFormat) return "it is a recording of another version of this program";
        // A commit is on the disk when it returns, and a reader is never in the way.
        if (!database_.run("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; BEGIN IMMEDIATE"))
            return whyNotReady();
        if (empty && !makeTables()) return whyNotReady();
        return prepareStatements() ? "" : whyNotReady();
    }

    bool begin(const Session& session) override {
        boats_ = 0;
        begin_.bind(1, session.started);
        begin_.bind(2, session.program);
        if (!begin_.run()) return false;
        session_ = sqlite3_last_insert_rowid(database_.get());
        return true;
    }

    bool describe(const ChannelInfo& channel) override {
        channel_.bind(1, session_);
        channel_.bind(2, std::int64_t{channel.number});
        channel_.bind(3, channel.name);
        channel_.bind(4, channel.longName);
        channel_.bind(5, channel.unit);
        channel_.bind(6, std::int64_t{static_cast<std::int16_t>(channel.unitClass)});
        channel_.bind(7, std::int64_t{channel.timeoutSeconds});
        return channel_.run();
    }

    bool describe(const BoatInfo& boat) override {
        boat_.bind(1, session_);
        boat_.bind(2, std::int64_t{boat.number});
        boat_.bind(3, boat.name);
        boat_.bind(4, std::int64_t{boat.mmsi});
        boat_.bind(5, std::int64_t{boat.colour});
        countBoats_.bind(1, ++boats_);
        countBoats_.bind(2, session_);
        return boat_.run() && countBoats_.run();
    }

    bool add(const Value& value) override {
        value_.bind(1, session_);
        value_.bind(2, value.time);
        value_.bind(3, std::int64_t{value.boat});
        value_.bind(4, std::int64_t{value.channel});
        value_.bind(5, std::int64_t{static_cast<std::uint8_t>(value.kind)});
        bindPayload(value);
        return value_.run();
    }

    bool end(std::int64_t time) override {
        end_.bind(1, time);
        end_.bind(2, session_);
        return end_.run();
    }

    /// The next transaction begins at once, so that no other program records into the same file.
    bool commit() override { return database_.run("COMMIT; BEGIN IMMEDIATE"); }

    bool close() override {
        if (!database_.run("COMMIT")) return false;
        for (Statement* each : {&begin_, &channel_, &boat_, &countBoats_, &value_, &end_}) *each = {};
        // One plain file again, which can be read from a folder that can't be written. Somebody who reads it at
        // this moment prevents that; then it stays as it is, complete with the file beside it.
        static_cast<void>(database_.run("PRAGMA journal_mode = DELETE"));
        return database_.close();
    }

    [[nodiscard]] std::uint64_t bytes() const override {
        std::uint64_t sum = 0;
        for (const char* const suffix : {"", "-wal"}) {
            std::error_code error;
            const std::string name = path_ + suffix;
            const auto size = std::filesystem::file_size(std::u8string(name.begin(), name.end()), error);
            if (!error) sum += size;
        }
        return sum;
    }

    [[nodiscard]] std::string error() const override { return database_.error(); }

  private:
    /// With what to do, where that is known.
    [[nodiscard]] std::string whyNotReady() const {
        switch (sqlite3_errcode(database_.get())) {
        case SQLITE_BUSY:
            return "another program is recording into it, or uses it otherwise; end that one, or give another name";
        case SQLITE_CANTOPEN:
            return "it can't be made or opened; does its folder exist, and may you write there?";
        case SQLITE_READONLY:
            return "it may only be read; give another name";
        default:
            return database_.error();
        }
    }

    std::optional<std::int64_t> pragma(const char* sql) const {
        Statement statement(database_, sql);
        return statement && statement.step() ? std::optional(statement.integer(0)) : std::nullopt;
    }

    [[nodiscard]] bool makeTables() const {
        const std::string mark = "PRAGMA application_id = " + std::to_string(kApplicationId) +
                                 "; PRAGMA user_version = " + std::to_string(kFormat);
        return database_.run(kSchema) && database_.run(mark.c_str()) && database_.run("COMMIT; BEGIN IMMEDIATE");
    }

    bool prepareStatements() {
        begin_ = {database_, "INSERT INTO recording (started, program, boats) VALUES (?, ?, 0)"};
        channel_ = {database_, "INSERT OR REPLACE INTO channel VALUES (?, ?, ?, ?, ?, ?, ?)"};
        boat_ = {database_, "INSERT OR REPLACE INTO boat VALUES (?, ?, ?, ?, ?)"};
        countBoats_ = {database_, "UPDATE recording SET boats = ? WHERE id = ?"};
        value_ = {database_,
                  "INSERT INTO value (recording, time, boat, channel, kind, value) VALUES (?, ?, ?, ?, ?, ?)"};
        end_ = {database_, "UPDATE recording SET ended = ? WHERE id = ?"};
        return begin_ && channel_ && boat_ && countBoats_ && value_ && end_;
    }

    void bindPayload(const Value& value) {
        constexpr int parameter = 6;
        if (!value.payload) return value_.bindNull(parameter);
        const Record record = value.record(value.kind);
        switch (value.kind) {
        case StorageKind::Byte:
            return value_.bind(parameter, std::int64_t{record.byte()});
        case StorageKind::Integer:
            return value_.bind(parameter, std::int64_t{record.integer()});
        case StorageKind::Time:
            return value_.bind(parameter, record.ticks());
        case StorageKind::Double:
            break;
        }
        if (std::isnan(record.number())) return value_.bind(parameter, std::string_view("nan")); // SQL has none
        value_.bind(parameter, record.number());
    }

    Database database_;
    std::string path_;
    Statement begin_, channel_, boat_, countBoats_, value_, end_;
    std::int64_t session_ = 0;
    std::int64_t boats_ = 0;
};

} // namespace

OpenedWriter openSqliteWriter(const std::string& path) {
    if (path.empty() || !tools::wideFileName(path)) return {nullptr, "no file has this name"};
    auto writer = std::make_unique<SqliteWriter>(path);
    std::string error = writer->prepare();
    if (!error.empty()) return {nullptr, std::move(error)};
    return {std::move(writer), {}};
}

} // namespace tallowmere::recording
