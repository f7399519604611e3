#include "tools/calibration/check_config.hpp"

#include "core/channels/shared_area.hpp"
#include "core/config/number_scanner.hpp"
#include "settings/text_lines.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tallowmere::tools {
namespace {

constexpr std::size_t kFewestFields = 9; // the row and eight channels

void dropSpace(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t\n\v\f\r"), rest.size()));
}

bool takeComma(std::string_view& rest) {
    if (!rest.starts_with(',')) return false;
    rest.remove_prefix(1);
    return true;
}

std::optional<ScannedNumber> takeNumber(std::string_view& rest) {
    const auto number = NumberScanner<char>(rest).number();
    if (!number) return number;
    dropSpace(rest);
    if (rest.front() == '-' || rest.front() == '+') rest.remove_prefix(1);
    rest.remove_prefix(std::min(rest.find_first_not_of("0123456789"), rest.size()));
    return number;
}

class AlternateChecker {
  public:
    AlternateChecker(const std::u16string& path, Findings& findings) : path_(path), findings_(findings) {}

    void line(std::string_view text) {
        ++line_;
        if (text.size() >= kLongestLine) report("the line is longer than 65536 bytes", "what lies beyond is ignored");
        if (line_ == 1 && text.starts_with(kUtf8Mark)) {
            if (const auto number = NumberScanner<char>(text.substr(kUtf8Mark.size())).number())
                report("a byte order mark stands before the row number", "the line is skipped");
            return;
        }
        if (text.ends_with('\r')) text.remove_suffix(1);
        if (text.empty() || text.front() == '!' || text.find_first_not_of(" \t\v\f\r") == std::string_view::npos)
            return;
        row(text);
    }

  private:
    struct Scan {
        std::size_t filled = 0;
        std::uint32_t row = 0;
        std::array<ScannedNumber, kAlternateColumns> numbers{};
        std::string_view rest;
    };

    void report(std::string what, std::string effect) {
        findings_.add(path_, line_, std::move(what), std::move(effect));
    }

    /// As the library scans it, the ninth place kept from line to line.
    Scan scan(std::string_view text, bool commas) {
        Scan scan;
        scan.rest = text;
        const auto row = takeNumber(scan.rest);
        if (!row) return scan;
        scan.row = row->asUnsigned32();
        scan.filled = 1;
        for (std::size_t column = 0; column < kAlternateColumns; ++column) {
            if (commas && !takeComma(scan.rest)) break;
            const auto number = takeNumber(scan.rest);
            if (!number) break;
            scan.numbers[column] = *number;
            if (column + 1 == kAlternateColumns) {
                ninth_ = number->asInt16();
                ninthLine_ = line_;
            }
            ++scan.filled;
        }
        dropSpace(scan.rest);
        return scan;
    }

    void row(std::string_view text) {
        Scan found = scan(text, true);
        const std::size_t byCommas = found.filled;
        if (byCommas < kFewestFields) found = scan(text, false);
        if (found.filled == 0) return report(inQuotes(text) + " begins with no row number", "the line is skipped");
        if (found.filled < kFewestFields)
            return report("has " + std::to_string(std::max(found.filled, byCommas) - 1) +
                              " channel numbers, and at least 8 are needed",
                          "the line is skipped");
        if (found.row >= kAlternateRows)
            return report("there is no row " + std::to_string(found.row) + ", only 0 to 9", "the line is skipped");
        std::size_t& before = rowLines_[found.row];
        if (before != 0)
            report("row " + std::to_string(found.row) + " was there already on line " + std::to_string(before),
                   "its channels replace those, and other cells keep them");
        before = line_;
        for (std::size_t column = 0; column + 1 < found.filled; ++column) cell(column, found.numbers[column]);
        if (found.filled == kFewestFields) carryOver();
        if (!found.rest.empty()) report(inQuotes(found.rest) + " follows the channel numbers", "it is ignored");
    }

    /// 0 and 32767 are the usual ways to leave a cell out.
    void cell(std::size_t column, const ScannedNumber& number) {
        const std::int64_t written = number.asInt64();
        const std::int16_t read = number.asInt16();
        const std::string name = "channel " + std::to_string(written) + " of column " + std::to_string(column);
        const bool taken = read >= 1 && read < static_cast<std::int16_t>(kChannelCount);
        if (taken && written != read)
            report(name + " does not fit 16 bits", "it is read as " + std::to_string(read));
        else if (!taken && written != 0 && written != kNone16)
            report(name + " is not 1 to 413", "the cell stays as it was");
    }

    void carryOver() {
        if (ninth_ < 1 || ninth_ >= static_cast<std::int16_t>(kChannelCount)) return;
        report("has eight channel numbers",
               "column 8 takes " + std::to_string(ninth_) + " as line " + std::to_string(ninthLine_) + " left it");
    }

    const std::u16string& path_;
    Findings& findings_;
    std::size_t line_ = 0;
    std::array<std::size_t, kAlternateRows> rowLines_{};
    std::int16_t ninth_ = 0;
    std::size_t ninthLine_ = 0;
};

} // namespace

void checkAlternateFile(const platform::Platform& platform, const std::u16string& path, Findings& findings) {
    if (!platform.exists(path)) return;
    const auto file = platform.openFile(path);
    if (file == nullptr) return findings.add(path, 0, "can't be opened for reading", "the table stays empty");
    AlternateChecker checker(path, findings);
    if (!forEachLine(*file, [&](std::string_view text) { checker.line(text); }))
        findings.add(path, 0, "is longer than 16 MiB", "what lies beyond is ignored");
}

} // namespace tallowmere::tools
