#include "tools/record/plot.hpp"

#include "core/channels/replay_sign.hpp"
#include "tools/calibration/file_names.hpp"
#include "tools/commands/channel_finder.hpp"
#include "tools/commands/reading.hpp"
#include "tools/commands/text.hpp"
#include "tools/record/damage_notes.hpp"
#include "tools/record/moment_text.hpp"
#include "tools/record/recording_reader.hpp"
#include "tools/record/time_chart.hpp"
#include "units/unit_names.hpp"

#include <algorithm>
#include <filesystem>

namespace tallowmere::recording {
namespace {

constexpr std::int64_t kNarrowest = 10'000; // a millisecond, in 100 ns

void complain(const tools::CommandContext& context, const std::string& text) {
    context.err << "tallowmere plot: " << text << '\n';
}

using Channels = std::map<ChannelIndex, ChannelInfo>;

/// The channel as the recording describes it, or as the catalogue does.
ChannelInfo infoOf(const Channels& channels, ChannelIndex channel) {
    const auto found = channels.find(channel);
    if (found != channels.end()) {
        ChannelInfo info = found->second;
        if (info.name.empty()) info.name = tools::nameOf(nullptr, channel);
        return info;
    }
    const UnitClass unitClass = kCatalogue[channel].unitClass();
    return {channel,
            tools::nameOf(nullptr, channel),
            printable(longNameOf(nullptr, channel)),
            unitNameOf(unitClass).baseUnit,
            unitClass,
            kCatalogue[channel].timeoutSeconds};
}

/// A name that only the recording knows.
std::optional<ChannelIndex> findIn(const Channels& channels, const std::string& name) {
    for (const auto& [number, info] : channels)
        if (tools::lowerCased(info.name) == tools::lowerCased(name)) return number;
    return std::nullopt;
}

/// Reads a recording of rows once through: only then are all of its channels known.
Channels allChannels(const tools::CommandContext& context, const std::string& file, RecordingReader& reader) {
    if (!reader.channels().empty()) return reader.channels();
    const OpenedReader another = openRecording(context.platform, file, context.stop);
    while (another.reader && !context.stop && another.reader->next()) {
    }
    return another.reader ? another.reader->channels() : Channels();
}

std::optional<std::vector<TimeSeries>> seriesFor(const tools::CommandContext& context, const PlotOptions& options,
                                                 RecordingReader& reader) {
    const tools::ChannelFinder finder(nullptr);
    const Channels channels = allChannels(context, options.file, reader);
    std::vector<TimeSeries> series;
    for (const std::string& name : options.channels) {
        auto [channel, error] = finder.find(name);
        if (const auto own = findIn(channels, name)) channel = own;
        if (!channel) {
            complain(context, error);
            return std::nullopt;
        }
        TimeSeries each;
        each.channel = infoOf(channels, *channel);
        if (each.channel.unitClass == UnitClass::TimeSpan) each.channel.unit = "s";
        if (!isDrawable(each.channel)) {
            complain(context, printable(each.channel.name) + " is a moment, which is no quantity to be drawn");
            return std::nullopt;
        }
        series.push_back(std::move(each));
    }
    return series;
}

/// What is read for one picture.
class Plot {
  public:
    Plot(const tools::CommandContext& context, const PlotOptions& options, Place from, std::optional<Place> to)
        : options_(options), from_(from), to_(to), damage_(context.err, "plot") {}

    void take(std::vector<TimeSeries>& series, const Item& item) {
        if (const auto* const session = std::get_if<Session>(&item)) {
            finish(series);
            begin(series, session->started);
            replay_ = session->program.ends_with(printable(kReplaySign));
        } else if (const auto* const end = std::get_if<SessionEnd>(&item)) {
            seen_ = std::max(seen_, end->time);
        } else if (const auto* const damage = std::get_if<Damage>(&item)) {
            damage_.add(options_.file, *damage);
        } else if (const auto* const value = std::get_if<Value>(&item)) {
            takeValue(series, *value);
        }
    }

    /// Nothing more comes, or nothing more of this session.
    void finish(std::vector<TimeSeries>& series) {
        if (!started_) return;
        const std::int64_t until = to_ ? std::min(seen_, to_->in(*started_)) : seen_;
        for (TimeSeries& each : series) each.end(until);
        hasReplay_ = hasReplay_ || (replay_ && linesOf(series) > linesBefore_);
    }

    /// The whole of what was found, or the part that was asked for. Empty when nothing was found.
    [[nodiscard]] std::optional<std::pair<std::int64_t, std::int64_t>>
    range(const std::vector<TimeSeries>& series) const {
        std::optional<std::pair<std::int64_t, std::int64_t>> found;
        for (const TimeSeries& each : series) {
            if (each.lines.empty()) continue;
            const auto first = each.lines.front().front().time;
            const auto last = each.lines.back().back().time;
            found = found ? std::pair(std::min(found->first, first), std::max(found->second, last))
                          : std::pair(first, last);
        }
        if (!found || !started_) return std::nullopt;
        if (!options_.from.empty()) found->first = from_.in(*started_);
        if (to_) found->second = to_->in(*started_);
        found->second = std::max(found->second, found->first + kNarrowest);
        return found;
    }

    /// Some of it was recorded from a replay.
    [[nodiscard]] bool hasReplay() const noexcept { return hasReplay_; }

  private:
    void begin(std::vector<TimeSeries>& series, std::int64_t session) {
        if (!started_) started_ = session;
        seen_ = session;
        linesBefore_ = linesOf(series);
        for (TimeSeries& each : series) each.begin(std::max(session, from_.in(*started_)));
    }

    void takeValue(std::vector<TimeSeries>& series, const Value& value) {
        if (!started_) begin(series, value.time);
        seen_ = std::max(seen_, value.time);
        // Without a place to begin what is older than the recording counts too, when it was still fresh then.
        const std::int64_t from = from_.in(*started_) - (options_.from.empty() ? kFresh : 0);
        if (value.boat != options_.boat || (to_ && value.time > to_->in(*started_))) return;
        for (TimeSeries& each : series) {
            if (each.channel.number != value.channel || (value.time < from && !each.isStepped())) continue;
            each.add(value);
        }
    }

    static std::size_t linesOf(const std::vector<TimeSeries>& series) noexcept {
        std::size_t count = 0;
        for (const TimeSeries& each : series) count += each.lines.size();
        return count;
    }

    static constexpr std::int64_t kFresh = 10'000'000; // a second

    const PlotOptions& options_;
    Place from_;
    std::optional<Place> to_;
    DamageNotes damage_;
    std::optional<std::int64_t> started_;
    bool replay_ = false;         // the session that is being read
    std::int64_t seen_ = 0;       // until when it goes, as far as is known
    std::size_t linesBefore_ = 0; // there were when it began
    bool hasReplay_ = false;
};

/// Null when one of the two is no place, which is told.
bool placesOf(const tools::CommandContext& context, const PlotOptions& options, Place& from, std::optional<Place>& to) {
    for (const std::string* const text : {&options.from, &options.to}) {
        if (text->empty()) continue;
        const auto place = parsePlace(*text);
        if (!place) {
            complain(context,
                     "\"" + printable(*text) +
                         "\" is no place in a recording; write 2025-11-21T12:34:56Z, or +90 for 90 s after its start");
            return false;
        }
        if (text == &options.from)
            from = *place;
        else
            to = place;
    }
    return true;
}

std::string fileNameOf(const std::string& path) {
    const std::filesystem::path name(std::u8string(path.begin(), path.end()));
    const std::u8string text = name.filename().u8string();
    return {text.begin(), text.end()};
}

std::string shortMoment(std::int64_t ticks) {
    std::string text = momentText(ticks).substr(0, 19);
    text[10] = ' ';
    return text;
}

int write(const tools::CommandContext& context, const PlotOptions& options, const std::string& svg) {
    if (options.output.empty()) {
        context.out << svg;
        return tools::exit_code::kDone;
    }
    if (tools::writeWholeFile(options.output, svg)) return tools::exit_code::kDone;
    complain(context, "can't write " + printable(options.output));
    return tools::exit_code::kSystem;
}

} // namespace

int runPlot(const tools::CommandContext& context, const PlotOptions& options) {
    Place from;
    std::optional<Place> to;
    if (!placesOf(context, options, from, to)) return tools::exit_code::kUsage;
    const OpenedReader opened = openRecording(context.platform, options.file, context.stop);
    const std::string file = printable(options.file);
    if (!opened.reader) {
        complain(context, file + ": " + opened.error);
        return tools::exit_code::kNotFound;
    }
    auto series = seriesFor(context, options, *opened.reader);
    if (!series) return tools::exit_code::kNotFound;
    Plot plot(context, options, from, to);
    bool any = false; // was read
    while (!context.stop) {
        const auto item = opened.reader->next();
        if (!item) break;
        any = true;
        plot.take(*series, *item);
    }
    plot.finish(*series);
    const std::string error = opened.reader->error();
    if (!error.empty()) complain(context, file + ": " + error + (any ? "; the rest of it is missing" : ""));
    if (!error.empty() && !any) return tools::exit_code::kNotFound;
    const auto range = plot.range(*series);
    if (!range || !isMoment(range->first) || !isMoment(range->second)) {
        complain(context, file + ": no values of these channels of boat " + std::to_string(options.boat) + " there");
        return tools::exit_code::kNotFound;
    }
    const std::string boat = options.boat == 0 ? "own boat" : "boat " + std::to_string(options.boat);
    TimeChart chart{fileNameOf(options.file),
                    boat + ", " + shortMoment(range->first) + " to " + shortMoment(range->second) + " UTC" +
                        (plot.hasReplay() ? ", REPLAY" : ""),
                    range->first, range->second, std::move(*series)};
    const int code = write(context, options, svgTimeChart(chart));
    return error.empty() ? code : tools::exit_code::kNotFound;
}

} // namespace tallowmere::recording
