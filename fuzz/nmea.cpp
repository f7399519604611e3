// A stream of NMEA 0183 and AIS through to the section. Each sentence whose checksum is wrong is taken again
// with a right one, so that the rules behind it are met by damaged fields too.
#include "fuzz/support/reader_section.hpp"
#include "tools/feed/feed.hpp"
#include "tools/feed/plausible.hpp"
#include "tools/feed/section_sink.hpp"
#include "tools/feed/timeline.hpp"
#include "tools/nmea/encode.hpp"
#include "tools/nmea/line_splitter.hpp"

#include <optional>
#include <string>

namespace tallowmere::fuzz {
namespace {

/// Notes where the feed may have written.
class WatchingSink final : public feed::ChannelSink {
  public:
    WatchingSink(ReaderSection& reader, ValueStore& values) noexcept
        : watched_(reader.watched), sink_(values), area_(*reader.watched.area()) {}

    bool write(ChannelIndex channel, double value, BoatIndex boat) override {
        if (!feed::isPlausible(channel, value)) fail("an implausible value came through", channel);
        const bool stored = sink_.write(channel, value, boat);
        allowClockAndDerived();
        const auto slot = valueSlotOf(area_, channel, boat);
        if (slot) {
            allow(slot.stamp, sizeof *slot.stamp);
            allow(slot.current, sizeof *slot.current);
            allow(&area_.boats[boat].hasData, 1);
            allow(&area_.settings[channel].written, 1);
        }
        return stored;
    }
    [[nodiscard]] std::optional<double> read(ChannelIndex channel) const override { return sink_.read(channel); }
    [[nodiscard]] std::optional<BoatIndex> boatFor(std::uint32_t mmsi) override {
        const std::optional<BoatIndex> boat = sink_.boatFor(mmsi);
        if (boat) allow(&area_.boats[*boat].mmsi, sizeof(std::uint32_t));
        if (boat && area_.boats[*boat].mmsi != mmsi) fail("a boat has another number", *boat);
        return boat;
    }

  private:
    void allow(const void* field, std::size_t size) {
        watched_.allow(static_cast<std::size_t>(static_cast<const std::byte*>(field) - watched_.bytes()), size);
    }
    void allowClockAndDerived() {
        for (FullBoatBlock& block : area_.fullBlocks) {
            allow(&block.stamps[ZAN_TIME], 8);
            allow(&block.current[ZAN_TIME], 16);
            allow(&block.second[ZAN_TIME], 16);
            allow(&block.third[ZAN_TIME], 16);
        }
        for (std::size_t boat = kFullBoatCount; boat < boatsInUse(area_); ++boat) {
            CompactBoatBlock& block = area_.compactBlocks[boat - kFullBoatCount];
            allow(&block.stamps[0], 8);
            allow(&block.current[0], 16);
            allow(&block.third[0], 16);
        }
        allow(&area_.boatCount, 4);
        allow(&area_.systemFlags[38], 1);
        for (const ChannelIndex derived : {ZAN_GPS_TOFFSET, ZAN_RUDDERTOE}) {
            allow(&area_.fullBlocks[0].stamps[derived], 8);
            allow(&area_.fullBlocks[0].current[derived], 16);
        }
    }

    WatchedSection& watched_;
    feed::SectionSink sink_;
    SharedArea& area_;
};

/// The sentence in a line, with the checksum that it should have; empty when there is no start.
std::string mended(const nmea::Line& line) {
    const std::size_t start = line.text.find_first_of("$!");
    if (start == line.text.npos || line.tooLong || nmea::readLine(line).usable()) return {};
    const std::string_view body = line.text.substr(start + 1);
    std::string whole = nmea::makeLine(line.text[start], body.substr(0, body.find('*')));
    whole.resize(whole.size() - 2);
    return whole;
}

void takeStream(std::string_view bytes, feed::Feed& feed, feed::Timeline& timeline) {
    nmea::LineSplitter splitter;
    const auto take = [&](const nmea::Line& line) {
        feed.take(line);
        timeline.add(line, feed::timeIn(line));
        const std::string repaired = mended(line);
        if (!repaired.empty()) feed.take({repaired, false, line.number});
    };
    while (const auto line = splitter.next(bytes)) take(*line);
    if (const auto line = splitter.finish()) take(*line);
}

/// However the bytes are cut into pieces, the lines are the same.
void checkPieces(std::string_view bytes) {
    constexpr std::size_t kPiece = 7;
    nmea::LineSplitter whole;
    nmea::LineSplitter pieces;
    std::string_view rest = bytes;
    std::string_view piece;
    const auto nextOfPieces = [&]() -> std::optional<nmea::Line> {
        for (;;) {
            if (auto line = pieces.next(piece)) return line;
            if (bytes.empty()) return pieces.finish();
            piece = bytes.substr(0, kPiece);
            bytes.remove_prefix(piece.size());
        }
    };
    for (;;) {
        auto one = whole.next(rest);
        if (!one) one = whole.finish();
        const auto other = nextOfPieces();
        if (one.has_value() != other.has_value()) fail("pieces give other lines");
        if (!one) return;
        if (one->text != other->text || one->tooLong != other->tooLong || one->number != other->number)
            fail("pieces give another line");
    }
}

} // namespace

void nmea(Bytes input) {
    static ReaderSection reader;
    static ValueStore values(reader.context());
    if (static bool first = true; first) {
        first = false;
        reader.watched.area()->systemIntegers[6] = 3; // the feed is the host, and takes its own fixes
        reader.watched.area()->boats[3].mmsi = 244'670'316;
        reader.watched.keep();
    }
    WatchingSink sink(reader, values);
    feed::Feed feed(sink);
    feed::Timeline timeline;
    takeStream(textOf(input), feed, timeline);
    timeline.finish();
    double due = 0.0;
    while (const auto line = timeline.next()) {
        if (!(line->due >= due)) fail("a line is due before the one ahead of it");
        due = line->due;
    }
    checkPieces(textOf(input));
    reader.finish("the feed wrote elsewhere");
}

} // namespace tallowmere::fuzz
