#include "tests/tools/record/recording_fixture.hpp"
#include "tools/record/time_axis.hpp"
#include "tools/record/time_series.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace tallowmere::test {
namespace {

using recording::Drawing;
using recording::TimeSeries;
using recording::TimeTick;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr std::int64_t kDay = 134'082'432'000'000'000; // 2025-11-22 00:00:00 UTC

class TimeSeriesTest : public ::testing::Test {
  protected:
    static TimeSeries seriesOf(UnitClass unitClass, const std::vector<double>& values, std::uint16_t timeout = 10) {
        TimeSeries series;
        series.channel.unitClass = unitClass;
        series.channel.timeoutSeconds = timeout;
        for (std::size_t i = 0; i < values.size(); ++i) add(series, static_cast<double>(i), values[i]);
        return series;
    }
    static void add(TimeSeries& series, double second, double value) {
        series.add({kDay + std::llround(second * 1e7), 1, 0, StorageKind::Double, Record::ofNumber(value).payload});
    }
    static void addNone(TimeSeries& series, double second) {
        series.add({kDay + std::llround(second * 1e7), 1, 0, StorageKind::Double, std::nullopt});
    }
    /// Points of a line: seconds and values.
    using Line = std::vector<std::pair<double, double>>;
    static std::vector<Line> shapeOf(const TimeSeries& series) {
        std::vector<Line> shape;
        for (const auto& line : series.lines) {
            shape.emplace_back();
            for (const auto& point : line)
                shape.back().emplace_back(static_cast<double>(point.time - kDay) / 1e7, point.value);
        }
        return shape;
    }
    /// No line may cross half of the picture in one step.
    static void expectNoStroke(const Drawing& drawing) {
        for (const auto& line : drawing.lines)
            for (std::size_t i = 1; i < line.size(); ++i)
                EXPECT_LE(std::fabs(line[i].value - line[i - 1].value), 180.0);
    }
};

TEST_F(TimeSeriesTest, NoValueInterruptsTheLine) {
    TimeSeries series = seriesOf(UnitClass::BoatSpeed, {1, 2});
    series.add({kDay + 2 * kSecond, 1, 0, StorageKind::Double, std::nullopt});
    add(series, 3, 4);
    ASSERT_THAT(series.lines, SizeIs(2));
    EXPECT_THAT(series.lines[0], SizeIs(2));
    EXPECT_THAT(series.lines[1], SizeIs(1));
}

TEST_F(TimeSeriesTest, TimeBeyondTheTimeOutInterruptsTheLine) {
    TimeSeries series = seriesOf(UnitClass::BoatSpeed, {1, 2});
    add(series, 11, 3); // ten seconds later: still fresh
    EXPECT_THAT(series.lines, SizeIs(1));
    add(series, 21.1, 3);
    EXPECT_THAT(series.lines, SizeIs(2));
    TimeSeries never = seriesOf(UnitClass::BoatSpeed, {1}, 0);
    add(never, 86'400, 3);
    EXPECT_THAT(never.lines, SizeIs(1));
}

TEST_F(TimeSeriesTest, WhatCanNotBeDrawnInterruptsTheLine) {
    const TimeSeries series =
        seriesOf(UnitClass::BoatSpeed, {1, std::nan(""), 2, std::numeric_limits<double>::infinity(), 3, 1e300});
    EXPECT_THAT(series.lines, SizeIs(3));
    EXPECT_EQ(series.left, 3U);
}

TEST_F(TimeSeriesTest, OlderValueIsLeftOut) {
    TimeSeries series = seriesOf(UnitClass::BoatSpeed, {1, 2});
    add(series, 0.5, 3);
    EXPECT_THAT(series.lines[0], SizeIs(2));
}

TEST_F(TimeSeriesTest, ValuesWithoutATimeOutStandUntilTheNextComes) {
    TimeSeries series = seriesOf(UnitClass::Latitude, {}, 0);
    add(series, 0, 39.47);
    add(series, 60, 39.48);
    add(series, 66, 39.475);
    series.end(kDay + 69 * kSecond);
    EXPECT_THAT(shapeOf(series),
                ElementsAre(Line{{0, 39.47}, {60, 39.47}, {60, 39.48}, {66, 39.48}, {66, 39.475}, {69, 39.475}}));
}

TEST_F(TimeSeriesTest, AValueStandsUntilItIsTakenAway) {
    TimeSeries series = seriesOf(UnitClass::Latitude, {}, 0);
    add(series, 0, 39.47);
    addNone(series, 3);
    add(series, 5, 39.48);
    addNone(series, 6);
    addNone(series, 7);
    series.end(kDay + 9 * kSecond);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{0, 39.47}, {3, 39.47}}, Line{{5, 39.48}, {6, 39.48}}));
}

TEST_F(TimeSeriesTest, AValueThatIsWrittenAgainStandsOnInOneStep) {
    TimeSeries series = seriesOf(UnitClass::Latitude, {39.47, 39.47, 39.47, 39.48, 39.48, 39.47}, 0);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{0, 39.47}, {3, 39.47}, {3, 39.48}, {5, 39.48}, {5, 39.47}}));
}

TEST_F(TimeSeriesTest, AValueStandsUntilOneComesThatCanNotBeDrawn) {
    TimeSeries series = seriesOf(UnitClass::Latitude, {}, 0);
    add(series, 0, 39.47);
    add(series, 2, std::nan(""));
    series.end(kDay + 9 * kSecond);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{0, 39.47}, {2, 39.47}}));
}

TEST_F(TimeSeriesTest, WhatStoodAtTheBeginningIsDrawnFromThereOn) {
    TimeSeries series = seriesOf(UnitClass::Latitude, {}, 0);
    series.begin(kDay + 100 * kSecond);
    add(series, 0, 39.46);
    add(series, 90, 39.47);
    add(series, 103, 39.48);
    series.end(kDay + 105 * kSecond);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{100, 39.47}, {103, 39.47}, {103, 39.48}, {105, 39.48}}));
}

TEST_F(TimeSeriesTest, WhatStoodAtTheBeginningAloneIsDrawnToTheEnd) {
    TimeSeries series = seriesOf(UnitClass::Latitude, {}, 0);
    series.begin(kDay + 100 * kSecond);
    add(series, 90, 39.47);
    series.end(kDay + 105 * kSecond);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{100, 39.47}, {105, 39.47}}));
    TimeSeries gone = seriesOf(UnitClass::Latitude, {}, 0);
    gone.begin(kDay + 100 * kSecond);
    add(gone, 90, 39.47);
    addNone(gone, 95);
    gone.end(kDay + 105 * kSecond);
    EXPECT_THAT(gone.lines, IsEmpty());
    TimeSeries over = seriesOf(UnitClass::Latitude, {}, 0);
    over.begin(kDay + 100 * kSecond);
    add(over, 90, 39.47);
    over.end(kDay + 95 * kSecond); // the recording ended before
    EXPECT_THAT(over.lines, IsEmpty());
}

TEST_F(TimeSeriesTest, TheNextSessionBeginsANewStep) {
    TimeSeries series = seriesOf(UnitClass::Latitude, {}, 0);
    add(series, 0, 39.47);
    series.end(kDay + 5 * kSecond);
    series.begin(kDay + 10 * kSecond);
    add(series, 0, 39.47);
    series.end(kDay + 12 * kSecond);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{0, 39.47}, {5, 39.47}}, Line{{10, 39.47}, {12, 39.47}}));
}

TEST_F(TimeSeriesTest, CodesAreStepsThatEndAtTheTimeOut) {
    TimeSeries series = seriesOf(UnitClass::IntegerCode, {}, 10);
    add(series, 0, 3);
    add(series, 8, 5);
    add(series, 30, 4);
    series.end(kDay + 32 * kSecond);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{0, 3}, {8, 3}, {8, 5}, {18, 5}}, Line{{30, 4}, {32, 4}}));
    TimeSeries before = seriesOf(UnitClass::IntegerCode, {}, 10);
    before.begin(kDay + 100 * kSecond);
    add(before, 95, 3);
    before.end(kDay + 120 * kSecond);
    EXPECT_THAT(shapeOf(before), ElementsAre(Line{{100, 3}, {105, 3}})) << "stale then";
    TimeSeries stale = seriesOf(UnitClass::IntegerCode, {}, 10);
    stale.begin(kDay + 100 * kSecond);
    add(stale, 85, 3);
    stale.end(kDay + 120 * kSecond);
    EXPECT_THAT(stale.lines, IsEmpty());
}

TEST_F(TimeSeriesTest, AnOlderCodeThatIsLeftOutEndsNoLine) {
    TimeSeries series = seriesOf(UnitClass::IntegerCode, {}, 10);
    series.begin(kDay + 100 * kSecond);
    add(series, 110, 3);
    add(series, 95, 4); // the clock was set back for a moment
    add(series, 118, 5);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{110, 3}, {118, 3}, {118, 5}}));
}

TEST_F(TimeSeriesTest, OtherValuesWithATimeOutGoStraightToTheNextAndNoFurther) {
    TimeSeries series = seriesOf(UnitClass::BoatSpeed, {1, 3});
    series.end(kDay + 5 * kSecond);
    EXPECT_THAT(shapeOf(series), ElementsAre(Line{{0, 1}, {1, 3}}));
}

TEST_F(TimeSeriesTest, AStepOfALongitudeOverTheDateLineLeavesAtTheEdge) {
    TimeSeries series = seriesOf(UnitClass::Longitude, {-170, -120, -70, -20, 30, 80, 130, 170}, 0);
    add(series, 8, -170);
    const Drawing drawing = draw(series);
    expectNoStroke(drawing);
    ASSERT_THAT(drawing.lines, SizeIs(2));
    EXPECT_EQ(drawing.lines[0].back().time, kDay + 8 * kSecond);
    EXPECT_EQ(drawing.lines[1].front().time, kDay + 8 * kSecond);
}

TEST_F(TimeSeriesTest, AnglesAboutNorthAreDrawnInOnePiece) {
    const Drawing drawing = draw(seriesOf(UnitClass::Bearing, {350, 355, 2, 8, 358}));
    ASSERT_THAT(drawing.lines, SizeIs(1));
    expectNoStroke(drawing);
    EXPECT_LT(drawing.y.high - drawing.y.low, 40.0);
    EXPECT_EQ(drawing.shown(drawing.lines[0][2].value), 2.0);
    EXPECT_EQ(drawing.shown(drawing.lines[0][0].value), 350.0);
    EXPECT_EQ(drawing.shown(360.0), 0.0) << "north, in the midst of the axis";
}

TEST_F(TimeSeriesTest, WindAnglesDeadAftAreDrawnInOnePiece) {
    const Drawing drawing = draw(seriesOf(UnitClass::WindAngle, {170, 178, -176, -170}));
    ASSERT_THAT(drawing.lines, SizeIs(1));
    expectNoStroke(drawing);
    EXPECT_EQ(drawing.shown(drawing.lines[0][2].value), -176.0);
    EXPECT_EQ(drawing.shown(180.0), 180.0);
}

TEST_F(TimeSeriesTest, AFullTurnGoesOutAtOneEdgeAndInAtTheOther) {
    const Drawing drawing = draw(seriesOf(UnitClass::Bearing, {10, 60, 110, 160, 210, 260, 310, 350, 30}));
    EXPECT_EQ(drawing.y.low, 0.0);
    EXPECT_EQ(drawing.y.high, 360.0);
    ASSERT_THAT(drawing.lines, SizeIs(2));
    expectNoStroke(drawing);
    EXPECT_EQ(drawing.lines[0].back().value, 360.0);
    EXPECT_EQ(drawing.lines[1].front().value, 0.0);
    EXPECT_EQ(drawing.lines[0].back().time, drawing.lines[1].front().time);
    EXPECT_EQ(drawing.lines[0].back().time, kDay + 7 * kSecond + kSecond / 4) << "10 of 40 degrees";
    EXPECT_EQ(drawing.shown(360.0), 360.0);
    EXPECT_EQ(drawing.shown(0.0), 0.0);
}

TEST_F(TimeSeriesTest, BackOverNorthGoesOutAtTheBottom) {
    const Drawing drawing = draw(seriesOf(UnitClass::Bearing, {350, 300, 250, 200, 150, 100, 50, 10, 340}));
    ASSERT_THAT(drawing.lines, SizeIs(2));
    EXPECT_EQ(drawing.lines[0].back().value, 0.0);
    EXPECT_EQ(drawing.lines[1].front().value, 360.0);
}

TEST_F(TimeSeriesTest, QuantitiesThatAreNoAnglesMayJump) {
    const Drawing drawing = draw(seriesOf(UnitClass::Plain, {0, 1000}));
    EXPECT_THAT(drawing.lines, SizeIs(1));
    EXPECT_FALSE(drawing.angle);
}

TEST_F(TimeSeriesTest, OneValueHasARangeToBeDrawnIn) {
    for (const UnitClass unitClass : {UnitClass::Plain, UnitClass::Bearing, UnitClass::Latitude}) {
        const Drawing drawing = draw(seriesOf(unitClass, {5}));
        EXPECT_LT(drawing.y.low, drawing.y.high);
    }
}

TEST(TimeAxis, TicksAreRoundAndTheDayStandsWhereItBegins) {
    const auto ticks = recording::makeTimeTicks(kDay - 25 * 60 * kSecond, kDay + 25 * 60 * kSecond, 11);
    ASSERT_THAT(ticks, SizeIs(11));
    EXPECT_EQ(ticks.front().time, "23:35");
    EXPECT_EQ(ticks.front().day, "21 Nov 2025");
    EXPECT_EQ(ticks[5].time, "00:00");
    EXPECT_EQ(ticks[5].day, "22 Nov 2025");
    EXPECT_THAT(ticks[6].day, IsEmpty());
}

TEST(TimeAxis, HasTicksForAnyLength) {
    for (std::int64_t span = 10'000; span < 2'000'000'000'000'000'000; span *= 3) {
        const auto ticks = recording::makeTimeTicks(kDay, kDay + span, 11);
        EXPECT_LE(ticks.size(), 11U) << span;
        EXPECT_GE(ticks.size(), 1U) << span;
    }
}

TEST(TimeAxis, ShortTimesShowSecondsAndTenths) {
    EXPECT_EQ(recording::makeTimeTicks(kDay, kDay + 20 * kSecond, 11)[1].time, "00:00:02");
    EXPECT_EQ(recording::makeTimeTicks(kDay, kDay + kSecond, 11)[1].time, "00:00:00.1");
}

class Plot : public RecordingTest {
  protected:
    Plot() {
        std::string rows = "time,boat,channel,name,unit,class,kind,value\n"
                           "2025-11-21T12:00:00.0000000Z,,,test,,,start,\n";
        for (int i = 0; i < 30; ++i) {
            const std::string time = "2025-11-21T12:00:" + std::string(i < 10 ? "0" : "") + std::to_string(i) + "Z,0,";
            rows += time + "1,BSP,kt,12,double," + std::to_string(5 + i % 3) + "\n";
            rows += time + "180,My <load>,kN,0,double," + std::to_string(100 * i) + "\n";
        }
        writeFile("a.csv", rows);
    }
    CommandRun plot(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"plot", path("a.csv")});
        return run(arguments);
    }
};

TEST_F(Plot, DrawsAPanelForEachChannelWithItsUnit) {
    const CommandRun result = plot({"BSP", "my <load>"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr(">BSP (kt)</text>"));
    EXPECT_THAT(result.out, HasSubstr(">My &lt;load&gt; (kN)</text>"));
    EXPECT_THAT(result.out, HasSubstr(">12:00:15</text>"));
    EXPECT_THAT(result.out, HasSubstr("own boat, 2025-11-21 12:00:00 to 2025-11-21 12:00:29 UTC"));
    EXPECT_THAT(result.out, Not(HasSubstr("nan")));
    std::size_t lines = 0;
    for (std::size_t at = result.out.find("<polyline"); at != std::string::npos;
         at = result.out.find("<polyline", at + 1))
        ++lines;
    EXPECT_EQ(lines, 2U);
    EXPECT_TRUE(result.out.ends_with("</svg>\n"));
}

TEST_F(Plot, PartOfARecording) {
    EXPECT_THAT(plot({"BSP", "--from", "+10", "--to", "2025-11-21T12:00:20Z"}).out,
                HasSubstr("12:00:10 to 2025-11-21 12:00:20 UTC"));
}

TEST_F(Plot, WhatStandsIsDrawnToTheEndOfTheRecording) {
    const std::string start = "time,boat,channel,name,unit,class,kind,value\n2025-11-21T12:00:00Z,,,test,,,start,\n";
    const std::string line = "2025-11-21T11:00:00Z,0,163,Port lat,deg,8,double,39.47\n"
                             "2025-11-21T12:00:06Z,0,163,Port lat,deg,8,double,39.48\n";
    const std::string speed = "2025-11-21T12:00:20Z,3,1,BSP,kt,12,double,6\n";
    const std::string end = "2025-11-21T12:00:25Z,,,,,,end,\n";
    const auto timesOf = [&](const std::string& rows, std::vector<std::string> more = {}) {
        writeFile("b.csv", start + rows);
        more.insert(more.begin(), {"plot", path("b.csv"), "Port lat"});
        const std::string out = run(more).out;
        const std::size_t from = out.find("own boat, 2025-11-21 12:") + 21;
        return from > out.size() ? std::string("none") : out.substr(from, 8) + out.substr(from + 23, 8);
    };
    EXPECT_EQ(timesOf(line + speed + end), "12:00:0012:00:25");
    EXPECT_EQ(timesOf(line + speed), "12:00:0012:00:20") << "cut short: until the last row of any channel and boat";
    EXPECT_EQ(timesOf(line), "12:00:0012:00:06");
    EXPECT_EQ(timesOf(line + end, {"--from", "+10", "--to", "+15"}), "12:00:1012:00:15");
    EXPECT_EQ(timesOf(line + end, {"--from", "+26"}), "none") << "after the end nothing stands";
    EXPECT_EQ(timesOf("2025-11-21T11:00:00Z,0,163,Port lat,deg,8,double,39.47\n" + end), "12:00:0012:00:25");
}

TEST_F(Plot, ARangeAfterAReplayIsNotCalledOne) {
    const std::string value = ",0,163,Port lat,deg,8,double,39.47\n";
    writeFile("b.csv", "time,boat,channel,name,unit,class,kind,value\n"
                       "2025-11-21T12:00:00Z,,,test [REPLAY],,,start,\n2025-11-21T12:00:00Z" +
                           value +
                           "2025-11-21T12:00:10Z,,,,,,end,\n2025-11-21T12:00:10Z,,,test,,,start,\n"
                           "2025-11-21T12:00:10Z" +
                           value + "2025-11-21T12:00:20Z,,,,,,end,\n");
    EXPECT_THAT(run({"plot", path("b.csv"), "163"}).out, HasSubstr("12:00:20 UTC, REPLAY<"));
    EXPECT_THAT(run({"plot", path("b.csv"), "163", "--from", "+11"}).out, HasSubstr("12:00:20 UTC<"));
}

TEST_F(Plot, WritesAFile) {
    const CommandRun result = plot({"BSP", "-o", path("a.svg")});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_GT(std::filesystem::file_size(path("a.svg")), 500U);
}

TEST_F(Plot, AChannelThatTheRecordingDoesNotNameHasItsUsualName) {
    writeFile("b.csv", "time,boat,channel,name,unit,class,kind,value\n2025-11-21T12:00:00Z,0,1,,kt,12,double,6\n");
    EXPECT_THAT(run({"plot", path("b.csv"), "1"}).out, HasSubstr(">BSP (kt)</text>"));
}

TEST_F(Plot, OfAFileOfWhichNothingWasReadNothingIsMissing) {
    writeFile("b.csv", "name,price\n");
    const CommandRun result = run({"plot", path("b.csv"), "BSP"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("it is no recording"));
    EXPECT_THAT(result.err, Not(HasSubstr("missing")));
    EXPECT_THAT(result.err, Not(HasSubstr("no values")));
}

TEST_F(Plot, SaysWhatCanNotBeDrawn) {
    EXPECT_EQ(plot({"BSP", "--boat", "3"}).code, 1);
    EXPECT_EQ(plot({"AWA"}).code, 1);
    EXPECT_EQ(plot({"nosuchchannel"}).code, 1);
    EXPECT_EQ(plot({std::to_string(ZAN_GPS_TIME)}).code, 1);
    EXPECT_EQ(plot({"Time"}).err, "tallowmere plot: Time is a moment, which is no quantity to be drawn\n");
    EXPECT_EQ(plot({"BSP", "--from", "later"}).code, 2);
    EXPECT_EQ(run({"plot", path("missing.csv"), "BSP"}).code, 1);
}

} // namespace
} // namespace tallowmere::test
