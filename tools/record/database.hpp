// Owners of an SQLite database and of its statements.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tallowmere::recording {

class Statement;

/// One connection; one thread at a time.
class Database {
  public:
    /// flags   SQLITE_OPEN_READONLY, or SQLITE_OPEN_READWRITE and perhaps SQLITE_OPEN_CREATE
    /// Check isOpen() before anything else.
    Database(const std::string& path, int flags) {
        sqlite3* opened = nullptr;
        open_ = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr) == SQLITE_OK;
        handle_.reset(opened); // there is one even then, to say what was wrong
    }

    [[nodiscard]] bool isOpen() const noexcept { return open_; }
    [[nodiscard]] sqlite3* get() const noexcept { return handle_.get(); }
    /// Runs statements that give no rows. False when one fails.
    [[nodiscard]] bool run(const char* sql) const noexcept {
        return sqlite3_exec(get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    }
    /// What the last call on this connection complained about.
    [[nodiscard]] std::string error() const { return handle_ ? sqlite3_errmsg(get()) : "out of memory"; }
    /// False when something still uses the database.
    [[nodiscard]] bool close() noexcept { return sqlite3_close(handle_.release()) == SQLITE_OK; }

  private:
    struct Close {
        void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
    };
    std::unique_ptr<sqlite3, Close> handle_;
    bool open_ = false;
};

/// A prepared statement; empty when it could not be prepared. Parameters and columns are counted as SQL does: from 1
/// and from 0. A text that was bound must live until the statement has run.
class Statement {
  public:
    Statement() noexcept = default;
    Statement(const Database& database, std::string_view sql) noexcept {
        sqlite3_stmt* prepared = nullptr;
        sqlite3_prepare_v3(database.get(), sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                           &prepared, nullptr);
        handle_.reset(prepared);
    }

    explicit operator bool() const noexcept { return handle_ != nullptr; }

    void bind(int parameter, std::int64_t value) noexcept { sqlite3_bind_int64(get(), parameter, value); }
    void bind(int parameter, double value) noexcept { sqlite3_bind_double(get(), parameter, value); }
    void bind(int parameter, std::string_view text) noexcept {
        sqlite3_bind_text(get(), parameter, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    }
    void bindNull(int parameter) noexcept { sqlite3_bind_null(get(), parameter); }

    /// True when there is a row; false at the end and on an error.
    [[nodiscard]] bool step() noexcept {
        result_ = handle_ ? sqlite3_step(get()) : SQLITE_MISUSE;
        return result_ == SQLITE_ROW;
    }
    /// How the last step ended: SQLITE_ROW, SQLITE_DONE or an error.
    [[nodiscard]] int result() const noexcept { return result_; }
    /// Runs a statement that gives no row. False on an error.
    [[nodiscard]] bool run() noexcept {
        static_cast<void>(step());
        const bool done = result_ == SQLITE_DONE;
        if (handle_) sqlite3_reset(get());
        return done;
    }

    /// SQLITE_INTEGER, SQLITE_FLOAT, SQLITE_TEXT, SQLITE_BLOB or SQLITE_NULL.
    [[nodiscard]] int type(int column) const noexcept { return sqlite3_column_type(get(), column); }
    [[nodiscard]] std::int64_t integer(int column) const noexcept { return sqlite3_column_int64(get(), column); }
    [[nodiscard]] double number(int column) const noexcept { return sqlite3_column_double(get(), column); }
    [[nodiscard]] std::string text(int column) const {
        const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(get(), column));
        return bytes != nullptr ? std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(get(), column)))
                                : std::string();
    }

  private:
    [[nodiscard]] sqlite3_stmt* get() const noexcept { return handle_.get(); }
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
    int result_ = SQLITE_OK;
};

} // namespace tallowmere::recording
