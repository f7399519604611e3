#include "tools/feed/timeline.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace tallowmere::feed {
namespace {

class Pace : public testing::Test {
  protected:
    void add(std::optional<double> time = std::nullopt) { timeline.add({"$IIMTW,016,C*3A", false, ++number}, time); }
    std::vector<double> dues() {
        std::vector<double> found;
        while (const auto line = timeline.next()) found.push_back(line->due);
        return found;
    }

    Timeline timeline;
    std::uint64_t number = 0;
};

TEST_F(Pace, LinesBetweenTwoTimesAreSpreadEvenly) {
    add(100.0);
    add();
    add(100.0);
    add();
    EXPECT_TRUE(dues().empty()) << "the next time isn't known yet";
    add(102.0);
    EXPECT_EQ(dues(), (std::vector<double>{0.0, 0.5, 1.0, 1.5}));
    add(103.0);
    EXPECT_EQ(dues(), (std::vector<double>{2.0}));
}

TEST_F(Pace, LinesKeepTheirTextAndNumber) {
    timeline.add({"one", true, 5}, std::nullopt);
    timeline.finish();
    const auto line = timeline.next();
    ASSERT_TRUE(line);
    EXPECT_EQ(line->line().text, "one");
    EXPECT_TRUE(line->line().tooLong);
    EXPECT_EQ(line->line().number, 5U);
    EXPECT_FALSE(timeline.next());
}

TEST_F(Pace, MidnightIsNoGap) {
    add(86'399.0);
    add(1.0);
    add(2.0);
    EXPECT_EQ(dues(), (std::vector<double>{0.0, 2.0}));
}

TEST_F(Pace, GapsAreNotWaitedFor) {
    add(100.0);
    add(160.0); // a minute is still waited for
    add(220.5); // more is not
    add(221.5);
    EXPECT_EQ(dues(), (std::vector<double>{0.0, 60.0, 60.0}));
}

TEST_F(Pace, SmallStepsBackAreAnotherDevicesClock) {
    add(100.0);
    add(99.0);
    add(101.0);
    add(100.0);
    add(102.0);
    EXPECT_EQ(dues(), (std::vector<double>{0.0, 0.5, 1.0, 1.5}));
}

TEST_F(Pace, LongStepsBackAreANewStart) {
    add(50'000.0);
    add(40'000.0);
    add(40'001.0);
    EXPECT_EQ(dues(), (std::vector<double>{0.0, 0.0}));
}

TEST_F(Pace, RecordingWithoutTimesRunsAsASlowSerialLine) {
    add();
    add();
    add();
    timeline.finish();
    const double line = 17 * 10.0 / 4800.0; // 15 characters and the line end, ten bits each
    const auto found = dues();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_DOUBLE_EQ(found[0], 0.0);
    EXPECT_DOUBLE_EQ(found[1], line);
    EXPECT_DOUBLE_EQ(found[2], 2.0 * line);
}

TEST_F(Pace, LinesAfterTheLastTimeKeepThePaceBefore) {
    add(100.0);
    add();
    add(101.0);
    add();
    timeline.finish();
    const auto found = dues();
    ASSERT_EQ(found.size(), 4U);
    EXPECT_DOUBLE_EQ(found[2], 1.0);
    EXPECT_DOUBLE_EQ(found[3], 1.5);
}

TEST_F(Pace, EndlessLinesWithoutANewTimeAreLetGo) {
    add(100.0);
    for (std::size_t count = 0; count < 3 * Timeline::kMostWaiting; ++count) add(100.0);
    EXPECT_GE(dues().size(), 2 * Timeline::kMostWaiting);
}

TEST_F(Pace, DueTimesNeverRunBack) {
    double times[] = {5.0, 5.0, 86'000.0, 0.0, 86'399.5, 0.5, 1e4, 3.0, 3.0, 4.0, 70.0, 64.0};
    for (const double time : times) add(time);
    timeline.finish();
    double last = 0.0;
    for (const double due : dues()) {
        EXPECT_GE(due, last);
        last = due;
    }
}

} // namespace
} // namespace tallowmere::feed
