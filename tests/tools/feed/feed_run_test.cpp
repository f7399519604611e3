#include "tests/tools/feed/fake_sink.hpp"
#include "tools/feed/feed_run.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <deque>

namespace tallowmere::feed {
namespace {

using namespace std::chrono_literals;

class FakeSource final : public Source {
  public:
    std::deque<std::string> pieces;
    State ending = State::End;
    bool recording = false;

    State read(std::string& bytes, std::chrono::milliseconds) override {
        if (pieces.empty()) {
            if (ending == State::Failed) error_ = "broken";
            return ending;
        }
        bytes += pieces.front();
        pieces.pop_front();
        return bytes.empty() ? State::Nothing : State::Data;
    }
    [[nodiscard]] bool isRecording() const noexcept override { return recording; }
};

class Running : public FeedTest {
  protected:
    bool run(double speed = 1.0) {
        Reporter reporter(stderr, false, true);
        return runFeed(feed, source, {speed}, stop, reporter, everyTurn);
    }

    FakeSource source;
    std::atomic<bool> stop = false;
    std::function<void()> everyTurn = [] {};
};

TEST_F(Running, PiecesAreJoinedAndTheLastLineNeedsNoEnd) {
    source.pieces = {"$IIMTW,0", "", "16,C*3A\r\n$IIMTW,0", "17,C*3B"};
    EXPECT_TRUE(run());
    EXPECT_EQ(feed.counts().used.at("MTW"), 2U);
    EXPECT_EQ(value(ZAN_SEATEMP), 17.0);
}

TEST_F(Running, FailedSourceIsTold) {
    source.pieces = {"$IIMTW,016,C*3A"};
    source.ending = Source::State::Failed;
    EXPECT_FALSE(run());
    EXPECT_EQ(feed.counts().lines, 1U);
    EXPECT_EQ(source.error(), "broken");
}

TEST_F(Running, StopEndsAWaitingFeedSoon) {
    source.ending = Source::State::Nothing;
    int turns = 0;
    everyTurn = [&] { stop = ++turns == 10; };
    EXPECT_TRUE(run());
    EXPECT_EQ(turns, 10);
}

TEST_F(Running, StopEndsAPacedRecordingSoon) {
    source.recording = true;
    source.pieces = {nmea::makeLine('$', "ECRMC,120000,V") + nmea::makeLine('$', "ECRMC,120050,V") +
                     nmea::makeLine('$', "ECRMC,120100,V")};
    int turns = 0;
    everyTurn = [&] { stop = ++turns == 5; };
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(run());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
    EXPECT_EQ(feed.counts().lines, 1U) << "the second line is due after fifty seconds";
}

TEST_F(Running, RecordingTakesItsTimeDividedBySpeed) {
    source.recording = true;
    source.pieces = {nmea::makeLine('$', "ECRMC,120000,V") + nmea::makeLine('$', "ECRMC,120010,V") +
                     nmea::makeLine('$', "ECRMC,120011,V")};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(run(50.0));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 200ms); // ten seconds, fifty times as fast
    EXPECT_EQ(feed.counts().lines, 3U);
}

TEST_F(Running, SpeedZeroDoesNotWait) {
    source.recording = true;
    for (int minute = 10; minute < 60; ++minute)
        source.pieces.push_back(nmea::makeLine('$', "ECRMC,12" + std::to_string(minute) + "00,V"));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(run(0.0));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 30s); // as recorded: 49 minutes
    EXPECT_EQ(feed.counts().lines, 50U);
}

TEST_F(Running, StreamIsNeverPaced) {
    source.pieces = {nmea::makeLine('$', "ECRMC,120000,V") + nmea::makeLine('$', "ECRMC,120050,V")};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(run());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
    EXPECT_EQ(feed.counts().lines, 2U);
}

} // namespace
} // namespace tallowmere::feed
