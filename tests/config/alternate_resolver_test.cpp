#include "core/config/alternate_table.hpp"
#include "tests/support/new_section.hpp"

#include <array>
#include <limits>

namespace tallowmere::test {
namespace {

constexpr std::int32_t kNone = 32767;
constexpr ChannelIndex kAlt0 = 117;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

class Resolver : public NewSection {
  protected:
    /// Cells of row 0: channel 200 + column, except the columns that are left empty.
    void fillRow(std::initializer_list<std::size_t> empty = {}) {
        for (std::size_t column = 0; column < 9; ++column) cell(column) = 200 + static_cast<std::int32_t>(column);
        for (const std::size_t column : empty) cell(column) = kNone;
    }
    std::int32_t& cell(std::size_t column, std::size_t row = 0) { return area->alternates.cells[row][column]; }

    /// Which column of row 0 is chosen; -1 for none.
    int column() {
        const ChannelIndex chosen = resolveAlternating(values, kAlt0);
        return chosen == kNone ? -1 : chosen - 200;
    }
    void set(ChannelIndex channel, double value) {
        ASSERT_TRUE(values.store(channel, values.doubleToRecord(channel, value).record, 0, kNoTime));
    }
    /// Puts a record where it lies, past every rule.
    void put(ChannelIndex channel, const Record& record) {
        area->boatCount = 1;
        storeRecord(area->fullBlocks[0].current[channel], record);
    }
    void setFlag(std::size_t index) { system.setFlag(index, 1); }
    void setClass(ChannelIndex channel, std::int16_t unitClass) { area->settings[channel].unitClass = unitClass; }
};

TEST_F(Resolver, OtherChannelsStandForThemselves) {
    EXPECT_EQ(resolveAlternating(values, 0), 0);
    EXPECT_EQ(resolveAlternating(values, 5), 5);
    EXPECT_EQ(resolveAlternating(values, 116), 116);
    EXPECT_EQ(resolveAlternating(values, 127), 127);
    EXPECT_EQ(resolveAlternating(values, 413), 413);
}

TEST_F(Resolver, ChannelsThatDoNotExistGiveNone) {
    EXPECT_EQ(resolveAlternating(values, 414), kNone);
    EXPECT_EQ(resolveAlternating(values, 65535), kNone);
}

TEST_F(Resolver, WithoutSectionEveryChannelStandsForItself) {
    const ValueStore bare(withoutSection);
    EXPECT_EQ(resolveAlternating(bare, kAlt0), kAlt0);
    EXPECT_EQ(resolveAlternating(bare, 414), kNone);
}

TEST_F(Resolver, EmptyRowGivesNone) {
    for (ChannelIndex channel = 117; channel <= 126; ++channel) EXPECT_EQ(resolveAlternating(values, channel), kNone);
}

TEST_F(Resolver, EachChannelUsesItsOwnRow) {
    for (std::size_t row = 0; row < 10; ++row) cell(0, row) = 300 + static_cast<std::int32_t>(row);
    for (ChannelIndex channel = 117; channel <= 126; ++channel)
        EXPECT_EQ(resolveAlternating(values, channel), 300 + channel - 117);
}

TEST_F(Resolver, FallbackIsTheFirstCellThatIsNotEmpty) {
    for (std::size_t first = 0; first < 9; ++first) {
        fillRow();
        for (std::size_t empty = 0; empty < first; ++empty) cell(empty) = kNone;
        cell(1) = kNone; // chosen by the clear flag otherwise
        EXPECT_EQ(column(), first == 1 ? 2 : static_cast<int>(first)) << first;
    }
}

// --- flag 46

TEST_F(Resolver, Flag46ChoosesColumn8BeforeAllElse) {
    fillRow();
    set(ZAN_TMTOGUN, 0.01);
    setFlag(36);
    setFlag(46);
    EXPECT_EQ(column(), 8);
    cell(8) = kNone;
    EXPECT_EQ(column(), 5);
}

TEST_F(Resolver, FlagsCountAsSetWhenNotZero) {
    fillRow();
    system.setFlag(46, 0x80);
    EXPECT_EQ(column(), 8);
    system.setFlag(46, 0);
    system.setFlag(36, 2);
    EXPECT_EQ(column(), 0);
}

// --- countdown to the gun

TEST_F(Resolver, RunningCountdownChoosesColumn5) {
    fillRow();
    set(ZAN_TMTOGUN, 0.01);
    EXPECT_EQ(column(), 5);
    set(ZAN_TMTOGUN, 0.0);
    EXPECT_EQ(column(), 5);
    cell(5) = kNone;
    EXPECT_EQ(column(), 1);
}

TEST_F(Resolver, CountdownAfterTheGunOrWithoutValueDoesNotFire) {
    fillRow();
    EXPECT_EQ(column(), 1); // no boat has data
    set(ZAN_TMTOGUN, -0.01);
    EXPECT_EQ(column(), 1);
    set(ZAN_TMTOGUN, NO_VALUE);
    EXPECT_EQ(column(), 1);
}

TEST_F(Resolver, CountdownIsJudgedByItsRawBits) {
    fillRow();
    put(ZAN_TMTOGUN, Record::ofNumber(NO_VALUE)); // as a count this is not negative
    EXPECT_EQ(column(), 5);
    put(ZAN_TMTOGUN, Record::ofNumber(-1.0));
    EXPECT_EQ(column(), 1);
    put(ZAN_TMTOGUN, Record{0xFF, 0});
    EXPECT_EQ(column(), 5);
    put(ZAN_TMTOGUN, Record::ofTicks(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(column(), 1);
    put(ZAN_TMTOGUN, Record::ofTicks(std::numeric_limits<std::int64_t>::max() - 1));
    EXPECT_EQ(column(), 5);
}

TEST_F(Resolver, CountdownIsReadForTimeClassesOnly) {
    fillRow();
    put(ZAN_TMTOGUN, Record::ofTicks(10));
    for (std::int16_t unitClass = -2; unitClass < 30; ++unitClass) {
        setClass(ZAN_TMTOGUN, unitClass);
        EXPECT_EQ(column(), unitClass == 1 || unitClass == 2 ? 5 : 1) << unitClass;
    }
}

// --- flag 36

TEST_F(Resolver, Flag36ChoosesBetweenColumns0And1) {
    fillRow();
    EXPECT_EQ(column(), 1);
    setFlag(36);
    EXPECT_EQ(column(), 0);
}

TEST_F(Resolver, EmptyCellOfFlag36LeavesTheOtherColumnToTheFallback) {
    fillRow({0});
    setFlag(36);
    EXPECT_EQ(column(), 1); // by the fallback: no wind angle
    set(ZAN_TWA, 40.0);
    EXPECT_EQ(column(), 7);
}

// --- wind angle

class ByWind : public Resolver {
  protected:
    void SetUp() override { fillRow({0, 1, 5, 8}); }
    int at(double windAngle) {
        set(ZAN_TWA, windAngle);
        return column();
    }
};

TEST_F(ByWind, WithoutWindAngleTheFallbackChooses) {
    EXPECT_EQ(column(), 2);
    set(ZAN_TWA, NO_VALUE);
    EXPECT_EQ(column(), 2);
}

TEST_F(ByWind, UnfitClassOfTheWindAngleLeadsToTheFallback) {
    cell(2) = kNone;
    put(ZAN_TWA, Record::ofNumber(-40.0));
    for (std::int16_t unitClass = -2; unitClass < 30; ++unitClass) {
        setClass(ZAN_TWA, unitClass);
        const bool unfit = unitClass == 1 || unitClass == 2 || unitClass == 11;
        EXPECT_EQ(column(), unfit ? 3 : 6) << unitClass;
    }
}

TEST_F(ByWind, RecordOfAnUnknownKindLeadsToTheFallback) {
    cell(2) = kNone;
    put(ZAN_TWA, Record{9, std::bit_cast<std::uint64_t>(-40.0)});
    EXPECT_EQ(column(), 3);
}

TEST_F(ByWind, WithoutTargetTheTackChooses) {
    EXPECT_EQ(at(-40.0), 6);
    EXPECT_EQ(at(40.0), 7);
    EXPECT_EQ(at(0.0), 7); // not negative
    EXPECT_EQ(at(-0.0), 7);
}

TEST_F(ByWind, WithoutTargetAndTackTheHalfChooses) {
    cell(6) = cell(7) = kNone;
    EXPECT_EQ(at(-40.0), 2);
    EXPECT_EQ(at(89.9), 2);
    EXPECT_EQ(at(90.0), 4);
    EXPECT_EQ(at(-150.0), 4);
    cell(2) = kNone;
    EXPECT_EQ(at(40.0), 3); // fallback
    cell(4) = kNone;
    EXPECT_EQ(at(150.0), 3);
}

TEST_F(ByWind, UpwindWithinTheMarginOfTheTarget) {
    set(ZAN_TARG_TWA, 42.0); // margin, system variable 7: 10
    EXPECT_EQ(at(51.9), 2);
    EXPECT_EQ(at(-51.9), 2);
    EXPECT_EQ(at(52.0), 3);
    set(ZAN_TARG_TWA, -42.0);
    EXPECT_EQ(at(51.9), 2);
    system.setVariable(7, -20.0);
    EXPECT_EQ(at(61.9), 2);
    EXPECT_EQ(at(62.0), 3);
}

TEST_F(ByWind, DownwindWithinTheMarginOfTheTarget) {
    set(ZAN_TARG_TWA, 145.0);
    EXPECT_EQ(at(135.1), 4);
    EXPECT_EQ(at(-170.0), 4);
    EXPECT_EQ(at(135.0), 3);
    EXPECT_EQ(at(100.0), 3);
}

TEST_F(ByWind, ExactlyAbeamIsReaching) {
    set(ZAN_TARG_TWA, 145.0);
    EXPECT_EQ(at(90.0), 3);
    EXPECT_EQ(at(-90.0), 3);
    set(ZAN_TARG_TWA, 85.0);
    EXPECT_EQ(at(90.0), 3);
}

TEST_F(ByWind, EmptyCellsOfTheTargetRulesLeadOn) {
    set(ZAN_TARG_TWA, 42.0);
    cell(2) = kNone;
    EXPECT_EQ(at(40.0), 3); // reaching takes the place of upwind
    cell(3) = kNone;
    EXPECT_EQ(at(40.0), 7);
    set(ZAN_TARG_TWA, 145.0);
    EXPECT_EQ(at(100.0), 7); // too high for downwind, and no reaching cell
    cell(3) = 203;
    cell(4) = kNone;
    EXPECT_EQ(at(170.0), 3);
}

TEST_F(ByWind, UnfitClassOfTheTargetSkipsItsRules) {
    put(ZAN_TARG_TWA, Record::ofNumber(42.0));
    set(ZAN_TWA, 40.0);
    for (std::int16_t unitClass = -2; unitClass < 30; ++unitClass) {
        setClass(ZAN_TARG_TWA, unitClass);
        const bool unfit = unitClass == 1 || unitClass == 2 || unitClass == 11;
        EXPECT_EQ(column(), unfit ? 7 : 2) << unitClass;
    }
}

TEST_F(ByWind, NanIsAValueThatComparesWithNothing) {
    put(ZAN_TWA, Record::ofNumber(kNan));
    EXPECT_EQ(column(), 7); // not negative
    cell(7) = kNone;
    EXPECT_EQ(column(), 2); // neither half: the fallback
    put(ZAN_TARG_TWA, Record::ofNumber(42.0));
    EXPECT_EQ(column(), 3);
}

TEST_F(ByWind, MarginWithoutValueIsUsedAsTheNumberItIs) {
    system.setVariable(7, NO_VALUE);
    set(ZAN_TARG_TWA, 42.0);
    EXPECT_EQ(at(89.0), 2);
    system.setVariable(7, kNan);
    EXPECT_EQ(at(40.0), 3);
}

TEST_F(ByWind, OtherBoatsPlayNoPart) {
    ASSERT_TRUE(values.store(ZAN_TWA, Record::ofNumber(-40.0), 1, kNoTime));
    ASSERT_TRUE(values.store(ZAN_TWA, Record::ofNumber(-40.0), 2, kNoTime));
    EXPECT_EQ(column(), 2);
}

// --- one alternating channel for another

TEST_F(Resolver, AlternatingCellIsFollowedOnce) {
    cell(0) = 118;
    cell(0, 1) = 5;
    EXPECT_EQ(resolveAlternating(values, 117), 5);
    EXPECT_EQ(resolveAlternating(values, 117, false), 118);
}

TEST_F(Resolver, AlternatingCellIsFollowedNoFurther) {
    cell(0) = 118;
    cell(0, 1) = 119;
    cell(0, 2) = 5;
    EXPECT_EQ(resolveAlternating(values, 117), 119);
}

TEST_F(Resolver, RowsThatPointAtThemselvesEnd) {
    cell(0) = 117;
    EXPECT_EQ(resolveAlternating(values, 117), 117);
    cell(0) = 118;
    cell(0, 1) = 117;
    EXPECT_EQ(resolveAlternating(values, 117), 117);
}

TEST_F(Resolver, FollowedChannelWithAnEmptyRowGivesNone) {
    cell(0) = 118;
    EXPECT_EQ(resolveAlternating(values, 117), kNone);
}

// --- hostile content

TEST_F(Resolver, CellsOutside1To413CountAsEmpty) {
    for (const std::int32_t hostile : {0, -1, 414, 32766, 65536 + 5, std::numeric_limits<std::int32_t>::max(),
                                       std::numeric_limits<std::int32_t>::min()}) {
        for (std::size_t column = 0; column < 9; ++column) cell(column) = hostile;
        EXPECT_EQ(resolveAlternating(values, kAlt0), kNone) << hostile;
        cell(8) = 413;
        EXPECT_EQ(resolveAlternating(values, kAlt0), 413) << hostile;
    }
}

TEST_F(Resolver, NoiseInTheSectionGivesAChannelOrNone) {
    for (unsigned seed = 0; seed < 50; ++seed) {
        fillWithNoise(seed);
        for (auto& row : area->alternates.cells)
            for (std::int32_t& each : row) each &= 0x1FF;
        for (ChannelIndex channel = 110; channel < 130; ++channel) {
            const ChannelIndex chosen = resolveAlternating(values, channel);
            EXPECT_TRUE(chosen < 414 || chosen == kNone) << channel;
        }
    }
}

} // namespace
} // namespace tallowmere::test
