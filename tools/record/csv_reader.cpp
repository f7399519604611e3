#include "tools/record/csv_format.hpp"
#include "tools/record/moment_text.hpp"
#include "tools/record/recording_reader.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <utility>
#include <vector>

namespace tallowmere::recording {
namespace {

constexpr std::size_t kLongestLine = 4096; // a row of ours has less than 300 bytes

template <class Number> std::optional<Number> wholeNumber(std::string_view text) noexcept {
    Number number{};
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
    return number;
}

/// Lines of a file, at most kLongestLine bytes of each; any line end.
class Lines {
  public:
    explicit Lines(std::unique_ptr<platform::FileReader> file) : file_(std::move(file)), piece_(65'536) {}

    bool next(std::string& line) {
        line.clear();
        tooLong_ = false;
        bool any = false;
        for (char c = 0; take(c);) {
            any = true;
            if (c == '\n') break;
            if (line.size() < kLongestLine)
                line += c;
            else
                tooLong_ = true;
        }
        if (line.ends_with('\r')) line.pop_back();
        if (any) ++number_;
        return any;
    }
    [[nodiscard]] std::uint64_t number() const noexcept { return number_; }
    [[nodiscard]] bool tooLong() const noexcept { return tooLong_; }

  private:
    bool take(char& c) noexcept {
        if (at_ == filled_) {
            filled_ = file_->read(piece_);
            at_ = 0;
            if (filled_ == 0) return false;
        }
        c = piece_[at_++];
        return true;
    }

    std::unique_ptr<platform::FileReader> file_;
    std::vector<char> piece_;
    std::size_t at_ = 0;
    std::size_t filled_ = 0;
    std::uint64_t number_ = 0;
    bool tooLong_ = false;
};

using Fields = std::array<std::string, csv::kColumnCount>;

/// Cuts a line into exactly as many fields as there are columns; false when it has others.
bool cut(std::string_view line, Fields& fields) {
    std::size_t field = 0;
    std::size_t at = 0;
    for (std::string& each : fields) each.clear();
    for (;;) {
        const bool quoted = at < line.size() && line[at] == '"';
        if (quoted) ++at;
        for (; at < line.size(); ++at) {
            if (quoted && line[at] == '"') {
                if (at + 1 >= line.size() || line[at + 1] != '"') break;
                ++at; // a pair of quotes is one
            } else if (!quoted && line[at] == ',') {
                break;
            }
            fields[field] += line[at];
        }
        if (quoted && (at == line.size() || line[at++] != '"')) return false;
        if (at == line.size()) return field + 1 == fields.size();
        if (line[at++] != ',' || ++field == fields.size()) return false;
    }
}

std::optional<StorageKind> kindNamed(std::string_view name) noexcept {
    for (std::size_t kind = 0; kind < csv::kKindNames.size(); ++kind)
        if (csv::kKindNames[kind] == name) return static_cast<StorageKind>(kind);
    return std::nullopt;
}

std::optional<std::uint64_t> payloadIn(StorageKind kind, std::string_view text) noexcept {
    const auto as = [](auto number, auto record) -> std::optional<std::uint64_t> {
        return number ? std::optional(record(*number).payload) : std::nullopt;
    };
    switch (kind) {
    case StorageKind::Byte:
        return as(wholeNumber<std::uint8_t>(text), [](std::uint8_t byte) { return Record{0, byte}; });
    case StorageKind::Integer:
        return as(wholeNumber<std::int32_t>(text), Record::ofInteger);
    case StorageKind::Time:
        return as(wholeNumber<std::int64_t>(text), Record::ofTicks);
    case StorageKind::Double:
        break;
    }
    return as(wholeNumber<double>(text), Record::ofNumber);
}

class CsvReader final : public RecordingReader {
  public:
    explicit CsvReader(std::unique_ptr<platform::FileReader> file) : lines_(std::move(file)) {
        if (!lines_.next(line_) || line_ != csv::kHeader)
            error_ = "it is no recording: neither an SQLite database nor a table with the first line \"" +
                     std::string(csv::kHeader) + "\"";
    }

    std::optional<Item> next() override {
        while (error_.empty() && lines_.next(line_)) {
            if (line_.empty()) continue;
            if (lines_.tooLong()) return damaged("it is too long");
            if (!cut(line_, fields_)) return damaged("it has not the eight fields of the first line");
            if (fields_[csv::kKind] == csv::kEnd) return sessionEnd();
            return fields_[csv::kKind] == csv::kStart ? session() : value();
        }
        return std::nullopt;
    }

    [[nodiscard]] std::string error() const override { return error_; }

  private:
    [[nodiscard]] Item damaged(const char* why) const { return Damage{"line " + std::to_string(lines_.number()), why}; }

    [[nodiscard]] Item session() const {
        const auto started = parseMoment(fields_[csv::kTime]);
        if (!started) return damaged("its time is none");
        return Session{*started, fields_[csv::kName]};
    }

    [[nodiscard]] Item sessionEnd() const {
        const auto ended = parseMoment(fields_[csv::kTime]);
        if (!ended) return damaged("its time is none");
        return SessionEnd{*ended};
    }

    [[nodiscard]] Item value() {
        const auto time = parseMoment(fields_[csv::kTime]);
        const auto boat = wholeNumber<std::int64_t>(fields_[csv::kBoat]);
        const auto channel = wholeNumber<std::int64_t>(fields_[csv::kChannel]);
        if (const char* const problem = problemOf(time.value_or(0), boat.value_or(-1), channel.value_or(-1)))
            return damaged(problem);
        const auto kind = kindNamed(fields_[csv::kKind]);
        if (!kind) return damaged("there is no such kind of value");
        Value value{*time, static_cast<ChannelIndex>(*channel), static_cast<BoatIndex>(*boat), *kind, std::nullopt};
        const std::string& text = fields_[csv::kValue];
        if (!text.empty()) {
            value.payload = payloadIn(*kind, text);
            if (!value.payload) return damaged("its value is no number of its kind");
        }
        meet(value.channel);
        return value;
    }

    void meet(ChannelIndex channel) {
        const auto [place, isNew] = channels_.try_emplace(channel);
        if (!isNew) return;
        place->second = {channel,
                         fields_[csv::kName],
                         {},
                         fields_[csv::kUnit],
                         kCatalogue[channel].unitClass(),
                         kCatalogue[channel].timeoutSeconds};
        if (const auto unitClass = wholeNumber<std::int16_t>(fields_[csv::kClass]))
            place->second.unitClass = static_cast<UnitClass>(*unitClass);
    }

    Lines lines_;
    std::string line_;
    Fields fields_;
    std::string error_;
};

} // namespace

std::unique_ptr<RecordingReader> readCsv(std::unique_ptr<platform::FileReader> file) {
    return std::make_unique<CsvReader>(std::move(file));
}

} // namespace tallowmere::recording
