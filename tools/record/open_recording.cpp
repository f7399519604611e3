#include "tools/calibration/file_names.hpp"
#include "tools/record/moment_text.hpp"
#include "tools/record/recording_reader.hpp"

#include <array>
#include <string_view>
#include <utility>

namespace tallowmere::recording {
namespace {

using namespace std::string_view_literals;
constexpr std::string_view kSqliteStart = "SQLite format 3\0"sv;

} // namespace

OpenedReader openRecording(platform::Platform& platform, const std::string& path, const std::atomic<bool>& stop) {
    const auto name = tools::wideFileName(path);
    if (!name || name->empty()) return {nullptr, "no file has this name"};
    if (!platform.exists(*name)) return {nullptr, "there is no such file"};
    auto file = platform.openFile(*name);
    if (!file) return {nullptr, "it is no ordinary file, or can't be opened"};
    std::array<char, kSqliteStart.size()> start{};
    const std::size_t count = file->read(start);
    if (count == 0) return {nullptr, "it is empty"};
    if (std::string_view(start.data(), count) == kSqliteStart) return openSqliteReader(path, stop);
    file = platform.openFile(*name); // from the start again
    if (!file) return {nullptr, "it can't be opened"};
    return {readCsv(std::move(file)), {}};
}

const char* problemOf(std::int64_t time, std::int64_t boat, std::int64_t channel) noexcept {
    if (!isMoment(time)) return "its time is none";
    if (boat < 0 || boat >= static_cast<std::int64_t>(kBoatCount)) return "there is no such boat";
    if (channel < 0 || channel >= static_cast<std::int64_t>(kChannelCount)) return "there is no such channel";
    if (!isRecordable(static_cast<ChannelIndex>(channel))) return "this channel is never recorded";
    return nullptr;
}

} // namespace tallowmere::recording
