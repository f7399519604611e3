// A sink that remembers, and short ways to feed it.
#pragma once

#include "tools/feed/feed.hpp"
#include "tools/nmea/encode.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

namespace tallowmere::feed {

class FakeSink final : public ChannelSink {
  public:
    std::map<std::pair<BoatIndex, ChannelIndex>, double> values;
    std::map<std::uint32_t, BoatIndex> boats;
    std::optional<double> variation; // what the section holds
    bool accepts = true;

    bool write(ChannelIndex channel, double value, BoatIndex boat) override {
        if (!accepts) return false;
        values[{boat, channel}] = value;
        return true;
    }
    [[nodiscard]] std::optional<double> read(ChannelIndex channel) const override {
        return channel == ZAN_MAGVAR ? variation : std::nullopt;
    }
    [[nodiscard]] std::optional<BoatIndex> boatFor(std::uint32_t mmsi) override {
        const auto boat = boats.find(mmsi);
        return boat == boats.end() ? std::nullopt : std::optional(boat->second);
    }
};

class FeedTest : public testing::Test {
  protected:
    /// A sentence without start, checksum and line end: "IIMTW,016,C".
    void feedBody(std::string_view body, char start = '$') {
        std::string line = nmea::makeLine(start, body);
        line.resize(line.size() - 2);
        feedLine(line);
    }
    void feedLine(std::string_view text) { feed.take({text, false, ++number}); }

    [[nodiscard]] std::optional<double> value(ChannelIndex channel, BoatIndex boat = 0) const {
        const auto found = sink.values.find({boat, channel});
        return found == sink.values.end() ? std::nullopt : std::optional(found->second);
    }

    FakeSink sink;
    Feed feed{sink};
    std::uint64_t number = 0;
};

} // namespace tallowmere::feed
