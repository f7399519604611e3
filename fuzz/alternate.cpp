// alternate.csv into a section, held against the C library's own scanf.
#include "core/config/alternate_table.hpp"
#include "fuzz/support/reader_section.hpp"

#include <array>
#include <cstdio>
#include <cstring>
#include <string>

namespace tallowmere::fuzz {
namespace {

constexpr std::size_t kTable = 5144;
constexpr std::size_t kRows = 10;
constexpr std::size_t kColumns = 9;
constexpr std::size_t kLineKept = 64 * 1024;

using Table = std::array<std::array<std::int32_t, kColumns>, kRows>;

/// The table as the format's definition by scanf has it. The value slots are not cleared between the lines.
class ScanfReader {
  public:
    ScanfReader() {
        for (auto& row : table_) row.fill(32767);
    }
    [[nodiscard]] const Table& table() const noexcept { return table_; }

    void readLine(std::string line) {
        line.resize(std::min(line.size(), kLineKept));
        if (line.empty() || line.front() == '!') return;
        int count = scan(line, "%u,%hd,%hd,%hd,%hd,%hd,%hd,%hd,%hd,%hd");
        if (count < 9) count = scan(line, "%u\t%hd\t%hd\t%hd\t%hd\t%hd\t%hd\t%hd\t%hd\t%hd");
        if (count < 9 || row_ >= kRows) return;
        for (std::size_t column = 0; column < kColumns; ++column)
            if (values_[column] >= 1 && values_[column] <= 413) table_[row_][column] = values_[column];
    }

  private:
    int scan(const std::string& line, const char* format) noexcept {
        auto& v = values_;
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wformat-nonliteral"
        return std::sscanf(line.c_str(), format, &row_, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7], &v[8]);
#pragma clang diagnostic pop
    }

    unsigned row_ = 0;
    std::array<short, kColumns> values_{};
    Table table_{};
};

Table byScanf(std::string_view text) {
    ScanfReader reader;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        reader.readLine(std::string(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return reader.table();
}

} // namespace

void alternate(Bytes input) {
    static ReaderSection reader{{{kTable, sizeof(Table)}}};
    reader.platform.file = textOf(input);
    readAlternateTable(reader.context());
    const Table expected = byScanf(textOf(input));
    if (std::memcmp(reader.watched.bytes() + kTable, &expected, sizeof expected) != 0)
        fail("alternate.csv read otherwise than by scanf");
    reader.watched.allow(kTable, sizeof expected);
    reader.finish("alternate.csv wrote elsewhere");
}

} // namespace tallowmere::fuzz
