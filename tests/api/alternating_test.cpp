// The choice that the alternating channels 117 to 126 stand for, seen through the reads.
#include "tests/api/exports_fixture.hpp"

#include <initializer_list>

namespace tallowmere::test {
namespace {

constexpr std::size_t kFirstFlag = 36, kLastFlag = 46;
constexpr std::uint16_t kTwa = 4, kTimeToGun = 204, kTargetTwa = 237;
/// The channel that stands in column c of the full row.
constexpr int inColumn(int column) {
    return 300 + column;
}

class Alternating : public ExportsTest {
  protected:
    /// Row 0, channel 117: these columns hold a channel, the others none.
    void fillColumns(std::initializer_list<int> columns) {
        for (std::size_t column = 0; column < 9; ++column)
            raw.put<std::int32_t>(place::alternateCell(0, column), 32767);
        for (int column : columns)
            raw.put<std::int32_t>(place::alternateCell(0, static_cast<std::size_t>(column)), inColumn(column));
    }
    static int source(unsigned channel = 117) { return readVar(channel).source; }
    void twa(double value) { ASSERT_EQ(SetZanVar(kTwa, value, 0), 1); }
    void target(double value) { ASSERT_EQ(SetZanVar(kTargetTwa, value, 0), 1); }
    void margin(double value) { raw.put<double>(place::variable(7), value); }
    void countdown(std::int64_t ticks) {
        const ChannelValue record = recordOf(3, static_cast<std::uint64_t>(ticks));
        ASSERT_EQ(SetZanVar2(kTimeToGun, &record, 0), 1);
    }
};

TEST_F(Alternating, OtherChannelsAreThemselves) {
    for (unsigned channel : {0U, 1U, 116U, 127U, 413U}) EXPECT_EQ(source(channel), static_cast<int>(channel));
    EXPECT_EQ(source(414), 32767);
}

TEST_F(Alternating, EmptyRowHasNoSourceAndLeavesTheValue) {
    const Reading reading = readVar(117);
    EXPECT_FALSE(reading.holds);
    EXPECT_EQ(reading.source, 32767);
    EXPECT_EQ(reading.value, kUntouched);
}

TEST_F(Alternating, RecordOfAnEmptyRowHasNoValue) {
    ChannelValue record;
    std::memset(&record, 0x5A, sizeof record);
    std::uint16_t from = 0;
    EXPECT_EQ(GetZanVar2(117, &record, 0, &from), 0);
    EXPECT_EQ(from, 32767);
    EXPECT_EQ(headerOf(record), 1U);
    EXPECT_EQ(payloadOf(record), kNoValueBits);
}

TEST_F(Alternating, ValueOfTheSourceIsRead) {
    fillColumns({3});
    EXPECT_FALSE(readVar(117).holds);
    EXPECT_EQ(readVar(117).value, kUntouched);
    SetZanVar(static_cast<std::uint16_t>(inColumn(3)), 12.5, 0);
    SetZanVar(117, 99.0, 0); // the channel's own value plays no part
    const Reading reading = readVar(117);
    EXPECT_TRUE(reading.holds);
    EXPECT_EQ(reading.value, 12.5);
    EXPECT_EQ(reading.source, inColumn(3));
}

TEST_F(Alternating, OtherBoatsAreReadThroughTheOwnBoatsChoice) {
    raw.put<std::int32_t>(place::alternateCell(0, 6), 1);
    raw.put<std::int32_t>(place::alternateCell(0, 7), 2);
    twa(-40.0);
    SetZanVar(kTwa, 40.0, 3);
    SetZanVar(1, 6.4, 3);
    const Reading reading = readVar(117, 3);
    EXPECT_EQ(reading.source, 1);
    EXPECT_EQ(reading.value, 6.4);
}

TEST_F(Alternating, EveryRowBelongsToItsChannel) {
    for (std::size_t row = 0; row < 10; ++row)
        raw.put<std::int32_t>(place::alternateCell(row, 0), static_cast<std::int32_t>(200 + row));
    for (unsigned row = 0; row < 10; ++row) EXPECT_EQ(source(117 + row), static_cast<int>(200 + row));
}

// --- the rules, first to last

TEST_F(Alternating, Flag46TakesTheLastColumnBeforeAll) {
    fillColumns({0, 1, 2, 3, 4, 5, 6, 7, 8});
    twa(40.0);
    countdown(5);
    setFlag(kFirstFlag);
    setFlag(kLastFlag);
    EXPECT_EQ(source(), inColumn(8));
    setFlag(kLastFlag, 0x40); // any byte but 0
    EXPECT_EQ(source(), inColumn(8));
    setFlag(kLastFlag, 0);
    EXPECT_EQ(source(), inColumn(5));
    setFlag(kLastFlag);
    raw.put<std::int32_t>(place::alternateCell(0, 8), 32767);
    EXPECT_EQ(source(), inColumn(5));
}

TEST_F(Alternating, CountdownBeforeTheGunTakesColumnFive) {
    fillColumns({0, 1, 2, 3, 4, 5, 6, 7});
    twa(40.0);
    EXPECT_EQ(source(), inColumn(1)); // no countdown
    countdown(0);
    EXPECT_EQ(source(), inColumn(5));
    countdown(INT64_MAX - 1);
    EXPECT_EQ(source(), inColumn(5));
    countdown(-1);
    EXPECT_EQ(source(), inColumn(1));
    countdown(INT64_MIN);
    EXPECT_EQ(source(), inColumn(1));
    countdown(INT64_MAX);
    EXPECT_EQ(source(), inColumn(1));
}

TEST_F(Alternating, CountdownIsTheRawCountWhateverItsKindByteSays) {
    fillColumns({1, 5});
    const ChannelValue record = recordOf(1, kNoValueBits); // 32767.0 is a count that is not negative
    SetZanVar2(kTimeToGun, &record, 0);
    EXPECT_EQ(source(), inColumn(5));
}

TEST_F(Alternating, CountdownCountsOnlyWhileItsChannelIsATime) {
    fillColumns({1, 5});
    countdown(5);
    for (std::int16_t unitClass : {std::int16_t{0}, std::int16_t{3}, std::int16_t{11}}) {
        raw.put<std::int16_t>(place::unitClass(kTimeToGun), unitClass);
        EXPECT_EQ(source(), inColumn(1)) << unitClass;
    }
    for (std::int16_t unitClass : {std::int16_t{1}, std::int16_t{2}}) {
        raw.put<std::int16_t>(place::unitClass(kTimeToGun), unitClass);
        EXPECT_EQ(source(), inColumn(5)) << unitClass;
    }
}

TEST_F(Alternating, CountdownNeedsItsColumn) {
    fillColumns({1});
    countdown(5);
    EXPECT_EQ(source(), inColumn(1));
}

TEST_F(Alternating, Flag36ChoosesBetweenTheFirstTwoColumns) {
    fillColumns({0, 1, 2, 3, 4, 6, 7});
    twa(40.0);
    EXPECT_EQ(source(), inColumn(1));
    setFlag(kFirstFlag);
    EXPECT_EQ(source(), inColumn(0));
    setFlag(kFirstFlag, 2);
    EXPECT_EQ(source(), inColumn(0));
}

TEST_F(Alternating, ColumnOfTheOtherStateOfFlag36IsNoSubstitute) {
    twa(40.0);
    fillColumns({0, 7});
    EXPECT_EQ(source(), inColumn(7));
    setFlag(kFirstFlag);
    EXPECT_EQ(source(), inColumn(0));
    fillColumns({1, 7});
    EXPECT_EQ(source(), inColumn(7));
}

TEST_F(Alternating, WithoutAWindAngleTheFirstFilledColumnIsTaken) {
    fillColumns({3, 4, 6, 7});
    EXPECT_EQ(source(), inColumn(3));
    twa(-40.0);
    EXPECT_EQ(source(), inColumn(6));
    SetZanVar(kTwa, 32767.0, 0);
    EXPECT_EQ(source(), inColumn(3));
}

TEST_F(Alternating, WindAngleOfANonAngleClassIsNotLookedAt) {
    fillColumns({3, 6, 7});
    twa(-40.0);
    for (std::int16_t unitClass : {std::int16_t{1}, std::int16_t{2}, std::int16_t{11}}) {
        raw.put<std::int16_t>(place::unitClass(kTwa), unitClass);
        EXPECT_EQ(source(), inColumn(3)) << unitClass;
    }
    raw.put<std::int16_t>(place::unitClass(kTwa), 0); // any other class will do
    EXPECT_EQ(source(), inColumn(6));
}

struct TargetCase {
    double twa, target, margin;
    std::initializer_list<int> filled;
    int column;
};

TEST_F(Alternating, TargetAngleChoosesUpwindReachingOrDownwind) {
    const TargetCase cases[] = {
        // Upwind: the target and the margin lie above the angle.
        {40, 38, 10, {2, 3, 4}, 2},
        {47.5, 38, 10, {2, 3, 4}, 2},
        {48, 38, 10, {2, 3, 4}, 3}, // equal is not above
        {60, 38, 10, {2, 3, 4}, 3},
        {-40, 38, 10, {2, 3, 4, 6, 7}, 2}, // sizes only
        {40, -38, 10, {2, 3, 4}, 2},
        {47, 38, -10, {2, 3, 4}, 2},
        {40, 38, 0, {2, 3, 4}, 3},
        {40, 45, 10, {3, 4}, 3}, // no upwind column
        {40, 45, 10, {4, 7}, 7},
        {60, 38, 10, {2, 4, 7}, 7}, // no reaching column: by tack
        {60, 38, 10, {2, 4}, 2},    // nor a tack: by the angle alone
        // Downwind: the angle lies above the target less the margin.
        {150, 145, 10, {2, 3, 4}, 4},
        {135.5, 145, 10, {2, 3, 4}, 4},
        {135, 145, 10, {2, 3, 4}, 3},
        {100, 145, 10, {2, 3, 4}, 3},
        {-150, 145, 10, {2, 3, 4, 6}, 4},
        {150, -145, 10, {2, 3, 4}, 4},
        {150, 145, 10, {2, 3}, 3}, // no downwind column
        {100, 145, 10, {2, 4, 7}, 7},
        {-100, 145, 10, {2, 4, 6, 7}, 6},
        {100, 145, 10, {2, 4}, 4},
        // Across.
        {90, 40, 10, {2, 3, 4}, 3},
        {90, 40, 10, {2, 4, 7}, 7},
        {90, 40, 10, {2, 4}, 4},
    };
    for (const TargetCase& row : cases) {
        SCOPED_TRACE(::testing::Message()
                     << "angle " << row.twa << " target " << row.target << " margin " << row.margin);
        fillColumns(row.filled);
        twa(row.twa);
        target(row.target);
        margin(row.margin);
        EXPECT_EQ(source(), inColumn(row.column));
    }
}

TEST_F(Alternating, MarginWithoutAValueIsTakenAsItStands) {
    fillColumns({2, 3, 4});
    margin(32767.0);
    twa(60.0);
    target(38.0);
    EXPECT_EQ(source(), inColumn(2)); // 32767 and 38 lie above 60
}

TEST_F(Alternating, WithoutATargetTheTackDecides) {
    fillColumns({2, 3, 4, 6, 7});
    twa(-40.0);
    EXPECT_EQ(source(), inColumn(6));
    twa(40.0);
    EXPECT_EQ(source(), inColumn(7));
    twa(0.0);
    EXPECT_EQ(source(), inColumn(7)); // zero is not negative
    twa(180.0);
    EXPECT_EQ(source(), inColumn(7));
}

TEST_F(Alternating, TargetOfANonAngleClassIsNotLookedAt) {
    fillColumns({2, 3, 4, 7});
    twa(40.0);
    target(38.0);
    EXPECT_EQ(source(), inColumn(2));
    for (std::int16_t unitClass : {std::int16_t{1}, std::int16_t{2}, std::int16_t{11}}) {
        raw.put<std::int16_t>(place::unitClass(kTargetTwa), unitClass);
        EXPECT_EQ(source(), inColumn(7)) << unitClass;
    }
}

TEST_F(Alternating, TackOfTheOtherSideIsNoSubstitute) {
    twa(-40.0);
    fillColumns({3, 7});
    EXPECT_EQ(source(), inColumn(3)); // the fallback
    fillColumns({2, 3, 7});
    EXPECT_EQ(source(), inColumn(2)); // by the angle
    twa(40.0);
    fillColumns({3, 6});
    EXPECT_EQ(source(), inColumn(3));
}

TEST_F(Alternating, WithoutATackTheAngleDecides) {
    fillColumns({2, 3, 4});
    twa(89.9);
    EXPECT_EQ(source(), inColumn(2));
    twa(90.0);
    EXPECT_EQ(source(), inColumn(4));
    twa(-120.0);
    EXPECT_EQ(source(), inColumn(4));
    fillColumns({3, 4});
    twa(40.0);
    EXPECT_EQ(source(), inColumn(3)); // the fallback
    fillColumns({2, 3});
    twa(140.0);
    EXPECT_EQ(source(), inColumn(2)); // the first filled one
}

TEST_F(Alternating, FallbackIsTheFirstFilledColumn) {
    for (int column = 0; column < 9; ++column) {
        fillColumns({column});
        EXPECT_EQ(source(), inColumn(column));
    }
    fillColumns({8, 5, 6});
    EXPECT_EQ(source(), inColumn(5));
}

// --- one alternating channel that stands for another

TEST_F(Alternating, AnotherAlternatingChannelIsFollowedOnce) {
    raw.put<std::int32_t>(place::alternateCell(0, 0), 118);
    raw.put<std::int32_t>(place::alternateCell(1, 0), 1);
    SetZanVar(1, 6.4, 0);
    EXPECT_EQ(source(117), 1);
    EXPECT_EQ(readVar(117).value, 6.4);
    raw.put<std::int32_t>(place::alternateCell(1, 0), 119);
    raw.put<std::int32_t>(place::alternateCell(2, 0), 1);
    EXPECT_EQ(source(117), 119); // and no further
    EXPECT_EQ(source(118), 1);
    EXPECT_FALSE(readVar(117).holds);
}

TEST_F(Alternating, ChannelThatStandsForItselfEnds) {
    raw.put<std::int32_t>(place::alternateCell(0, 0), 117);
    EXPECT_EQ(source(117), 117);
    raw.put<std::int32_t>(place::alternateCell(0, 0), 118);
    raw.put<std::int32_t>(place::alternateCell(1, 0), 117);
    EXPECT_EQ(source(117), 117);
}

TEST_F(Alternating, AnotherAlternatingChannelWithAnEmptyRowGivesNoSource) {
    raw.put<std::int32_t>(place::alternateCell(0, 0), 118);
    const Reading reading = readVar(117);
    EXPECT_EQ(reading.source, 32767);
    EXPECT_EQ(reading.value, kUntouched);
    EXPECT_FALSE(reading.holds);
}

// --- hostile cells

TEST_F(Alternating, CellsOutside1To413CountAsEmpty) {
    for (std::int32_t cell : {0, -1, -5, 414, 500, 32767, 65536 + 1, INT32_MIN, INT32_MAX}) {
        raw.put<std::int32_t>(place::alternateCell(0, 0), cell);
        EXPECT_EQ(source(), 32767) << cell;
        raw.put<std::int32_t>(place::alternateCell(0, 4), 413);
        EXPECT_EQ(source(), 413) << cell;
        raw.put<std::int32_t>(place::alternateCell(0, 4), 32767);
    }
    raw.put<std::int32_t>(place::alternateCell(0, 0), 1);
    EXPECT_EQ(source(), 1);
}

TEST_F(Alternating, OutOfRangeBoatHasNoSource) {
    fillColumns({0});
    EXPECT_EQ(readVar(117, 100).source, 32767);
    EXPECT_EQ(readVar(117, 100).value, 32767.0);
}

} // namespace
} // namespace tallowmere::test
