#include "tests/support/new_section.hpp"
#include "units/convert.hpp"
#include "units/units.hpp"

#include <bit>
#include <cmath>
#include <limits>
#include <string_view>

namespace tallowmere::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A channel of each class, held against the catalogue below.
constexpr ChannelIndex kDepth = ZAN_DEPTH;
constexpr ChannelIndex kDistance = ZAN_DT_ON_S;
constexpr ChannelIndex kBearing = ZAN_TWD;
static_assert(kCatalogue[kDepth].unitClass() == UnitClass::Depth);
static_assert(kCatalogue[kDistance].unitClass() == UnitClass::Distance);
static_assert(kCatalogue[kBearing].unitClass() == UnitClass::Bearing);
static_assert(kCatalogue[ZAN_BSP].unitClass() == UnitClass::BoatSpeed);
static_assert(kCatalogue[ZAN_TWS].unitClass() == UnitClass::WindSpeed);
static_assert(kCatalogue[ZAN_HEEL].unitClass() == UnitClass::SignedAngle);
static_assert(kCatalogue[ZAN_TWA].unitClass() == UnitClass::WindAngle);
static_assert(ZAN_USER_0 == 172 && ZAN_USER_30 == 202);
static_assert(kCatalogue[ZAN_SEATEMP].unitClass() == UnitClass::Temperature);

ChannelIndex channelOf(UnitClass unitClass) {
    for (const ChannelDef& row : kCatalogue)
        if (row.unitClass() == unitClass) return row.index;
    ADD_FAILURE() << "no channel of this class";
    return 0;
}

#define EXPECT_BITS(actual, expected)                                                                                  \
    EXPECT_EQ(std::bit_cast<std::uint64_t>(static_cast<double>(actual)),                                               \
              std::bit_cast<std::uint64_t>(static_cast<double>(expected)))                                             \
        << (actual) << " is not " << (expected)

class Convert : public NewSection {
  protected:
    [[nodiscard]] double show(ChannelIndex channel, double value, double variation = NO_VALUE) const {
        return ConvertForDisplay(values, channel, value, variation);
    }
    /// Past the limits of the setters: another process may store any number.
    void setting(std::size_t integer, std::int32_t value) { area->systemIntegers[integer] = value; }
    void magneticBearings() { area->systemFlags[0] = 0; }
    void ownVariation(double variation) {
        ASSERT_TRUE(values.store(93, values.doubleToRecord(93, variation).record, 0, kNoTime));
    }
};

TEST(UnitTables, RowsAreIndexedByTheirId) {
    const auto check = [](std::span<const UnitDef> table) {
        for (std::size_t row = 0; row < table.size(); ++row) EXPECT_EQ(table[row].id, static_cast<std::int32_t>(row));
        EXPECT_EQ(table[0].factor, 1.0);
    };
    check(kDepthUnits);
    check(kDistanceUnits);
    check(kSpeedUnits);
    check(kPressureUnits);
}

TEST(UnitTables, OddEntriesAreKept) {
    EXPECT_BITS(kSpeedUnits[1].factor, static_cast<double>(0.51444447f));
    EXPECT_EQ(kDistanceUnits[1].factor, 1852.0);
    EXPECT_EQ(std::u16string_view(kPressureUnits[4].abbreviation), u"InHg");
    EXPECT_EQ(std::u16string_view(kPressureUnits[4].name), u"inHg");
}

TEST_F(Convert, WithoutSectionValuesAreUnchanged) {
    const ValueStore bare(withoutSection);
    EXPECT_EQ(ConvertForDisplay(bare, kBearing, 400.0, 10.0), 400.0);
    EXPECT_EQ(ConvertForDisplay(bare, kDepth, 10.0), 10.0);
}

TEST_F(Convert, NoValueStaysNoValue) {
    magneticBearings();
    area->systemFlags[2] = 1;
    for (const std::size_t integer : {1u, 2u, 3u, 4u, 9u}) setting(integer, 1);
    for (ChannelIndex channel = 0; channel < 420; ++channel) EXPECT_EQ(show(channel, NO_VALUE, 5.0), NO_VALUE);
}

TEST_F(Convert, ChannelsFrom414OnAreUnchanged) {
    magneticBearings();
    for (const ChannelIndex channel : std::initializer_list<ChannelIndex>{414, 1000, 65535})
        EXPECT_EQ(show(channel, 400.0, 10.0), 400.0);
}

TEST_F(Convert, ClassesWithoutUnitsAreUnchanged) {
    magneticBearings();
    area->systemFlags[2] = 1;
    for (const std::size_t integer : {1u, 2u, 3u, 4u, 9u}) setting(integer, 2);
    for (const std::int16_t unitClass : std::initializer_list<std::int16_t>{-32768, -1, 0, 1, 2, 8, 9, 10, 11, 15, 16,
                                                                            17, 18, 19, 21, 23, 100, 32767}) {
        area->settings[180].unitClass = unitClass;
        EXPECT_EQ(show(180, 400.0, 10.0), 400.0) << unitClass;
    }
}

TEST_F(Convert, UserChannelsTakeTheClassInTheSection) {
    setting(1, 2);
    for (const ChannelIndex channel : {ZAN_USER_0, ZAN_USER_30}) {
        area->settings[channel].unitClass = 3;
        EXPECT_EQ(show(channel, 10.0), 32.808) << channel;
    }
    area->settings[203].unitClass = 3; // KEPT: the catalogue's class counts for channel 203
    EXPECT_EQ(show(203, 10.0), 10.0);
    area->settings[kDepth].unitClass = 0;
    EXPECT_EQ(show(kDepth, 10.0), 32.808);
}

TEST_F(Convert, DepthFollowsItsSetting) {
    EXPECT_BITS(show(kDepth, 10.0), 10.0);
    setting(1, 1);
    EXPECT_BITS(show(kDepth, 10.0), 5.468);
    setting(1, 2);
    EXPECT_BITS(show(kDepth, 10.0), 32.808);
    for (const std::int32_t unknown :
         {3, 4, 1'000'000, std::numeric_limits<std::int32_t>::max(), -1, std::numeric_limits<std::int32_t>::min()}) {
        setting(1, unknown);
        EXPECT_EQ(show(kDepth, 10.0), NO_VALUE) << unknown;
    }
}

TEST_F(Convert, DistancesFollowTheirOwnSettings) {
    const std::pair<ChannelIndex, std::size_t> both[] = {{kDistance, 3}, {channelOf(UnitClass::LineDistance), 4}};
    for (const auto& [channel, integer] : both) {
        constexpr double kShown[] = {2.0, 0.0, 3704.0, 3.704, 2 * 2025.3718285214347, 2 * 6076.115485564304};
        for (const std::int32_t unit : {0, 2, 3, 4, 5}) {
            setting(integer, unit);
            EXPECT_BITS(show(channel, 2.0), kShown[unit]);
        }
        for (const std::int32_t unknown : {6, std::numeric_limits<std::int32_t>::max(), -1}) {
            setting(integer, unknown);
            EXPECT_EQ(show(channel, 2.0), 2.0) << unknown;
        }
        setting(integer, 0);
    }
}

TEST_F(Convert, DistanceInBoatLengths) {
    setting(3, 1);
    area->systemVariables[0] = 12.35;
    EXPECT_BITS(show(kDistance, 1.0), 1852.0 / 12.35);
    for (const double unknown : {NO_VALUE, 0.0, -0.0}) {
        area->systemVariables[0] = unknown;
        EXPECT_BITS(show(kDistance, 1.0), 1.0);
    }
    area->systemVariables[0] = kNan;
    EXPECT_TRUE(std::isnan(show(kDistance, 1.0)));
}

TEST_F(Convert, SpeedFollowsItsSetting) {
    for (const ChannelIndex channel : {ZAN_BSP, ZAN_TWS}) {
        setting(2, 0);
        EXPECT_BITS(show(channel, 10.0), 10.0);
        setting(2, 1);
        EXPECT_BITS(show(channel, 10.0), 5.144444704055786);
        setting(2, 2);
        EXPECT_BITS(show(channel, 10.0), 18.52);
        for (const std::int32_t unknown : {3, -1}) {
            setting(2, unknown);
            EXPECT_BITS(show(channel, 10.0), 10.0);
        }
    }
}

TEST_F(Convert, TemperatureFollowsItsFlag) {
    EXPECT_BITS(show(ZAN_SEATEMP, 20.0), 20.0);
    area->systemFlags[2] = 1;
    EXPECT_BITS(show(ZAN_SEATEMP, 20.0), 68.0);
    EXPECT_BITS(show(ZAN_SEATEMP, -40.0), -40.0);
    area->systemFlags[2] = 0x80;
    EXPECT_BITS(show(ZAN_SEATEMP, 100.0), 212.0);
}

TEST_F(Convert, PressureFollowsItsSetting) {
    const ChannelIndex pressure = channelOf(UnitClass::FluidPressure);
    constexpr double kShown[] = {100000.0, 100.0, 100000.0 * 0.00014504, 100000.0 * 1e-05,
                                 100000.0 * 0.00029529983071445};
    for (std::int32_t unit = 0; unit < 5; ++unit) {
        setting(9, unit);
        EXPECT_BITS(show(pressure, 100000.0), kShown[unit]);
    }
    for (const std::int32_t unknown : {5, -1}) {
        setting(9, unknown);
        EXPECT_BITS(show(pressure, 100000.0), 100000.0);
    }
}

TEST_F(Convert, SignedAnglesTakeOneStep) {
    for (const ChannelIndex channel : {ZAN_HEEL, ZAN_TWA}) {
        EXPECT_BITS(show(channel, 180.0), 180.0);
        EXPECT_BITS(show(channel, -180.0), -180.0);
        EXPECT_BITS(show(channel, 181.0), -179.0);
        EXPECT_BITS(show(channel, -181.0), 179.0);
        EXPECT_BITS(show(channel, 600.0), 240.0);
        EXPECT_BITS(show(channel, -600.0), -240.0);
        EXPECT_TRUE(std::isnan(show(channel, kNan)));
        EXPECT_EQ(show(channel, kInfinity), kInfinity);
    }
}

TEST_F(Convert, TrueBearingsTakeOneStepAndNoVariation) {
    ownVariation(10.0);
    EXPECT_BITS(show(kBearing, 355.0, 10.0), 355.0);
    EXPECT_BITS(show(kBearing, 0.0), 0.0);
    EXPECT_BITS(show(kBearing, 360.0), 0.0);
    EXPECT_BITS(show(kBearing, -1.0), 359.0);
    EXPECT_BITS(show(kBearing, 800.0), 440.0);
    EXPECT_BITS(show(kBearing, -800.0), -440.0);
}

TEST_F(Convert, BearingFlagIsSetWhenNotZero) {
    area->systemFlags[0] = 0x20;
    EXPECT_BITS(show(kBearing, 355.0, 10.0), 355.0);
}

TEST_F(Convert, GivenVariationIsAddedAndWrappedWhole) {
    magneticBearings();
    ownVariation(77.0);
    EXPECT_BITS(show(kBearing, 355.0, 10.0), 5.0);
    EXPECT_BITS(show(kBearing, 5.0, -10.0), 355.0);
    EXPECT_BITS(show(kBearing, 350.0, 10.0), 0.0);
    EXPECT_BITS(show(kBearing, 350.0, 1090.0), 0.0);
    EXPECT_BITS(show(kBearing, 10.0, -1460.0), 350.0);
    EXPECT_BITS(show(kBearing, 10.0, 0.0), 10.0);
}

// KEPT: a variation that is positive to the east is not taken off a true bearing.
TEST_F(Convert, VariationIsAddedAsItStandsSoMagneticBearingsWantItsNegative) {
    magneticBearings();
    ownVariation(15.0);
    EXPECT_BITS(show(kBearing, 316.0), 331.0);
    EXPECT_BITS(show(kBearing, 316.0, 15.0), 331.0);
    EXPECT_BITS(show(kBearing, 316.0, -15.0), 301.0);
}

TEST_F(Convert, WithoutGivenVariationTheOwnBoatsIsAdded) {
    magneticBearings();
    ownVariation(-12.0);
    EXPECT_BITS(show(kBearing, 5.0), 353.0);
    EXPECT_BITS(show(kBearing, 355.0), 343.0);
}

TEST_F(Convert, BearingIsUnknownWithoutAnyVariation) {
    magneticBearings();
    EXPECT_EQ(show(kBearing, 355.0), NO_VALUE);
    ASSERT_TRUE(values.store(93, Record::ofNumber(10.0), 1, kNoTime)); // another boat's
    EXPECT_EQ(show(kBearing, 355.0), NO_VALUE);
    ownVariation(10.0);
    EXPECT_BITS(show(kBearing, 355.0), 5.0);
    ownVariation(NO_VALUE);
    EXPECT_EQ(show(kBearing, 355.0), NO_VALUE);
}

TEST_F(Convert, SumJustBelowZeroIsZero) {
    magneticBearings();
    EXPECT_BITS(show(kBearing, 0.0, -1e-20), 0.0); // 360 - 1e-20 rounds to a whole turn
}

TEST_F(Convert, AbsurdBearingsEndInRangeOrAsNan) {
    magneticBearings();
    for (const double value : {1e300, -1e300, 1e18, -1e18, 12345678.9}) {
        const double shown = show(kBearing, value, 10.0);
        EXPECT_GE(shown, 0.0) << value;
        EXPECT_LT(shown, 360.0) << value;
    }
    for (const double value : {kNan, kInfinity, -kInfinity}) {
        EXPECT_TRUE(std::isnan(show(kBearing, value, 10.0))) << value;
        EXPECT_TRUE(std::isnan(show(kBearing, 10.0, value))) << value;
    }
}

TEST_F(Convert, NoiseInTheSectionIsSurvived) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        fillWithNoise(seed);
        for (ChannelIndex channel = 0; channel < 420; ++channel) (void)show(channel, 12.5);
    }
}

} // namespace
} // namespace tallowmere::test
