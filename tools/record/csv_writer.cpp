// Rows of text that explain themselves: the channel's name and unit stand in each.
#include "platform/durable_file.hpp"
#include "tools/calibration/file_names.hpp"
#include "tools/record/csv_format.hpp"
#include "tools/record/moment_text.hpp"
#include "tools/record/recording_writer.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tallowmere::recording {
namespace {

template <class Number> void appendNumber(std::string& row, Number number) {
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc()) row.append(text.data(), end);
}

/// In quotes where the format needs them.
void appendText(std::string& row, std::string_view text) {
    if (text.find_first_of("\",\r\n") == text.npos) {
        row += text;
        return;
    }
    row += '"';
    for (const char c : text) {
        if (c == '"') row += '"';
        row += c;
    }
    row += '"';
}

/// A double with as many digits as bring its very bits back.
void appendPayload(std::string& row, StorageKind kind, std::uint64_t payload) {
    const Record record{static_cast<std::uint64_t>(kind), payload};
    switch (kind) {
    case StorageKind::Byte:
        return appendNumber(row, static_cast<unsigned>(record.byte()));
    case StorageKind::Integer:
        return appendNumber(row, record.integer());
    case StorageKind::Time:
        return appendNumber(row, record.ticks());
    case StorageKind::Double:
        break;
    }
    if (std::isnan(record.number()))
        row += csv::kNotANumber;
    else
        appendNumber(row, record.number());
}

class CsvWriter final : public RecordingWriter {
  public:
    explicit CsvWriter(std::unique_ptr<platform::DurableFile> file) : file_(std::move(file)) {
        waiting_ = csv::kHeader;
        waiting_ += '\n';
    }

    bool begin(const Session& session) override {
        described_.fill({});
        waiting_ += momentText(session.started) + ",,,";
        appendText(waiting_, session.program);
        waiting_.append(",,,").append(csv::kStart) += ",\n";
        return true;
    }

    bool describe(const ChannelInfo& channel) override {
        std::string& text = described_[channel.number];
        text.clear();
        appendText(text, channel.name);
        text += ',';
        appendText(text, channel.unit);
        text += ',';
        appendNumber(text, static_cast<int>(channel.unitClass));
        return true;
    }

    bool describe(const BoatInfo&) override { return true; }

    bool add(const Value& value) override {
        waiting_ += momentText(value.time) + ',';
        appendNumber(waiting_, value.boat);
        waiting_ += ',';
        appendNumber(waiting_, value.channel);
        waiting_ += ',' + described_[value.channel] + ',';
        waiting_.append(csv::kKindNames[static_cast<std::size_t>(value.kind)]) += ',';
        if (value.payload) appendPayload(waiting_, value.kind, *value.payload);
        waiting_ += '\n';
        return true;
    }

    bool end(std::int64_t time) override {
        waiting_ += momentText(time) + ",,,,,,";
        waiting_.append(csv::kEnd) += ",\n";
        return true;
    }

    bool commit() override {
        if (waiting_.empty()) return true;
        failed_ = !file_->write(waiting_) || !file_->sync();
        written_ += waiting_.size();
        waiting_.clear();
        return !failed_;
    }

    bool close() override {
        const bool written = commit();
        file_.reset();
        return written;
    }

    [[nodiscard]] std::uint64_t bytes() const override { return written_; }
    [[nodiscard]] std::string error() const override { return failed_ ? "the disk takes no more" : ""; }

  private:
    std::unique_ptr<platform::DurableFile> file_;
    std::string waiting_; // rows since the last commit
    std::array<std::string, kChannelCount> described_;
    std::uint64_t written_ = 0;
    bool failed_ = false;
};

const char* whyNotMade(const std::u16string& path) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    if (std::filesystem::is_regular_file(status))
        return "it is there already, and rows are added to databases only; give another name";
    if (std::filesystem::exists(status)) return "it is no ordinary file; give another name";
    return "it can't be made; does its folder exist, and may you write there?";
}

} // namespace

OpenedWriter openCsvWriter(const std::string& path) {
    const auto name = tools::wideFileName(path);
    if (!name || name->empty()) return {nullptr, "no file has this name"};
    auto file = platform::makeDurableFile(*name);
    if (!file) return {nullptr, whyNotMade(*name)};
    return {std::make_unique<CsvWriter>(std::move(file)), {}};
}

} // namespace tallowmere::recording
