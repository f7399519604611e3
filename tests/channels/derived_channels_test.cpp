// What a write derives beside the value itself: rudder toe, mast-angle correction, rates, GPS time offset.
#include "tests/channels/store_fixture.hpp"

#include <array>

namespace tallowmere::test {
namespace {

constexpr ChannelIndex kAwa = 2, kHdg = 13, kHeel = 18, kTrim = 19, kMastAng = 24, kRot = 32, kGpsTime = 146,
                       kGpsOffset = 256, kTrimRate = 277, kHeelRate = 278, kRudderP = 282, kRudderS = 283,
                       kRudderToe = 284;
constexpr std::size_t kRatesFlag = 24, kTurnFlag = 27, kMastFlag = 33;

class Derived : public StoreTest {
  protected:
    void setFlag(std::size_t index, std::uint8_t value = 1) { raw.put<std::uint8_t>(place::flag(index), value); }
    [[nodiscard]] bool derived(std::size_t channel, std::size_t boat = 0) const {
        return storedBits(channel, boat) != (boat == 0 ? kNoValueBits : 0);
    }
};

// --- rudder toe

class RudderToe : public Derived {};

TEST_F(RudderToe, IsPortMinusStarboardWhicheverIsWritten) {
    write(kRudderS, 3.0);
    EXPECT_FALSE(derived(kRudderToe));
    write(kRudderP, 5.5, 0, 777);
    EXPECT_EQ(stored(kRudderToe), 2.5);
    EXPECT_EQ(stampOf(kRudderToe), 777);
    write(kRudderS, -1.0, 0, 888);
    EXPECT_EQ(stored(kRudderToe), 6.5);
    EXPECT_EQ(stampOf(kRudderToe), 888);
}

TEST_F(RudderToe, RecordHasKindZeroSoThatAPlainReadGivesItsFirstByte) {
    write(kRudderS, 0.1);
    write(kRudderP, 0.4);
    EXPECT_EQ(storedHeader(kRudderToe), 0U);
    EXPECT_EQ(stored(kRudderToe), 0.4 - 0.1);
    EXPECT_EQ(read(kRudderToe), static_cast<double>(bitsOf(0.4 - 0.1) & 0xFF));
}

TEST_F(RudderToe, UsesTheNormalisedValue) {
    write(kRudderS, 10.0);
    write(kRudderP, 190.0);
    EXPECT_EQ(stored(kRudderP), -170.0);
    EXPECT_EQ(stored(kRudderToe), -180.0);
}

TEST_F(RudderToe, IsNeitherRangeCheckedNorRefusedNorMarkedWritten) {
    raw.put<std::uint8_t>(place::blocked(kRudderToe), 1);
    write(kRudderS, -170.0);
    write(kRudderP, 170.0);
    EXPECT_EQ(stored(kRudderToe), 340.0);
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(kRudderToe)), 0);
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(kRudderP)), 1);
}

TEST_F(RudderToe, NeedsAValueOfTheOtherRudder) {
    write(kRudderP, 5.0);
    EXPECT_FALSE(derived(kRudderToe));
    write(kRudderP, 32767.0);
    write(kRudderS, 5.0);
    EXPECT_FALSE(derived(kRudderToe));
}

TEST_F(RudderToe, NeedsAValueInRangeAndAStoredOne) {
    write(kRudderS, 3.0);
    write(kRudderP, 5.0);
    ASSERT_EQ(stored(kRudderToe), 2.0);
    write(kRudderP, 32767.0);
    write(kRudderP, 600.0); // out of range
    EXPECT_EQ(stored(kRudderToe), 2.0);
    raw.put<std::uint8_t>(place::blocked(kRudderP), 1);
    write(kRudderP, 7.0);
    EXPECT_EQ(stored(kRudderToe), 2.0);
}

TEST_F(RudderToe, NeedsADoubleChannel) {
    raw.put<std::int16_t>(place::unitClass(kRudderToe), 1);
    write(kRudderS, 3.0);
    write(kRudderP, 5.0);
    EXPECT_FALSE(derived(kRudderToe));
}

TEST_F(RudderToe, BelongsToBoats0And1Only) {
    write(kRudderS, 3.0, 1);
    write(kRudderP, 5.0, 1);
    EXPECT_EQ(stored(kRudderToe, 1), 2.0);
    EXPECT_FALSE(derived(kRudderToe, 0));
    write(kRudderS, 3.0, 2);
    write(kRudderP, 9.0, 2);
    EXPECT_EQ(stored(kRudderToe, 1), 2.0);
    EXPECT_FALSE(derived(kRudderToe, 0));
}

TEST_F(RudderToe, OfBoatOneUsesTheZeroOfItsUnfilledBlockOnceTheBoatCounts) {
    write(kRudderP, 5.0, 1); // no boat 1 yet when this derives
    EXPECT_FALSE(derived(kRudderToe, 1));
    write(kRudderP, 6.0, 1);
    EXPECT_EQ(stored(kRudderToe, 1), 6.0);
}

TEST_F(RudderToe, OfNaNIsNaN) {
    write(kRudderS, 3.0);
    write(kRudderP, kNaN);
    EXPECT_NE(stored(kRudderToe), stored(kRudderToe));
}

// --- apparent wind angle and mast

class MastCorrection : public Derived {};

TEST_F(MastCorrection, SubtractsTheOwnBoatsMastAngleFromEveryBoatsAwa) {
    setFlag(kMastFlag);
    write(kMastAng, 12.5);
    write(kAwa, 30.0);
    EXPECT_EQ(stored(kAwa), 17.5);
    write(kAwa, 40.0, 1);
    EXPECT_EQ(stored(kAwa, 1), 27.5);
    write(kAwa, 50.0, 9);
    EXPECT_EQ(raw.get<double>(place::compactValue(8, 9) + 8), 37.5);
    EXPECT_EQ(storedHeader(kAwa), 1U);
}

TEST_F(MastCorrection, ComesAfterNormalisationAndIsNotNormalisedAgain) {
    setFlag(kMastFlag);
    write(kMastAng, 20.0);
    write(kAwa, -170.0);
    EXPECT_EQ(stored(kAwa), -190.0);
    write(kAwa, 190.0);
    EXPECT_EQ(stored(kAwa), -190.0);
}

TEST_F(MastCorrection, NeedsTheFlag) {
    write(kMastAng, 12.5);
    write(kAwa, 30.0);
    EXPECT_EQ(stored(kAwa), 30.0);
    setFlag(kMastFlag, 0x80); // any byte but 0
    write(kAwa, 30.0);
    EXPECT_EQ(stored(kAwa), 17.5);
}

TEST_F(MastCorrection, NeedsAMastAngleOfTheOwnBoat) {
    setFlag(kMastFlag);
    write(kAwa, 30.0);
    EXPECT_EQ(stored(kAwa), 30.0);
    write(kMastAng, 12.5, 1);
    write(kAwa, 30.0, 1);
    EXPECT_EQ(stored(kAwa, 1), 30.0);
}

// --- rates

struct RateCase {
    ChannelIndex source;
    ChannelIndex rate;
    std::size_t flag;
};

class Rate : public Derived, public ::testing::WithParamInterface<RateCase> {
  protected:
    static constexpr std::int64_t kFirst = 134'082'432'000'000'001; // low byte 1
    const ChannelIndex source = GetParam().source;
    const ChannelIndex rate = GetParam().rate;
    void on() { setFlag(GetParam().flag); }
    [[nodiscard]] bool hasRate(std::size_t boat = 0) const { return derived(rate, boat); }
};
INSTANTIATE_TEST_SUITE_P(Channels, Rate,
                         ::testing::Values(RateCase{kHdg, kRot, kTurnFlag}, RateCase{kHeel, kHeelRate, kRatesFlag},
                                           RateCase{kTrim, kTrimRate, kRatesFlag}));

TEST_P(Rate, IsTheChangeOverWholeSecondsWithTheSameStamp) {
    on();
    write(source, 10.0, 0, kFirst);
    EXPECT_FALSE(hasRate());
    write(source, 15.0, 0, kFirst + 29'999'999); // cut to two seconds
    EXPECT_EQ(stored(rate), 2.5);
    EXPECT_EQ(stampOf(rate), kFirst + 29'999'999);
    EXPECT_EQ(stored(source), 15.0);
}

TEST_P(Rate, RecordsHeaderIsThePreviousStamp) {
    on();
    write(source, 10.0, 0, kFirst);
    write(source, 12.0, 0, kFirst + 10'000'000);
    EXPECT_EQ(storedHeader(rate), static_cast<std::uint64_t>(kFirst));
    const auto kind = static_cast<std::uint8_t>(kFirst & 0xFF);
    EXPECT_EQ(raw.get<std::uint8_t>(place::fullValue(rate, 0)), kind);
    write(source, 14.0, 0, kFirst + 20'000'000);
    EXPECT_EQ(storedHeader(rate), static_cast<std::uint64_t>(kFirst + 10'000'000));
}

TEST_P(Rate, ReadsByTheLowByteOfThePreviousStamp) {
    on();
    const double change = 12.1 - 10.0;
    const std::pair<std::int64_t, double> cases[] = {
        {0x01D0000000000001, change},                                     // a double
        {0x01D0000000000000, static_cast<double>(bitsOf(change) & 0xFF)}, // the payload's first byte
        {0x01D0000000000002, static_cast<double>(static_cast<std::int32_t>(bitsOf(change)))},
        {0x01D0000000000003, 32767.0},  // a time, which this channel is not
        {0x01D00000000000FF, 32767.0}}; // no kind at all
    for (const auto& [stamp, value] : cases) {
        write(source, 10.0, 0, stamp);
        write(source, 12.1, 0, stamp + 10'000'000);
        EXPECT_EQ(stored(rate), change);
        EXPECT_EQ(read(rate), value) << stamp;
    }
}

TEST_P(Rate, NeedsAWholeSecond) {
    on();
    write(source, 10.0, 0, kFirst);
    write(source, 15.0, 0, kFirst + 9'999'999);
    EXPECT_FALSE(hasRate());
    write(source, 16.0, 0, kFirst + 9'999'999); // the same moment
    EXPECT_FALSE(hasRate());
    write(source, 17.0, 0, kFirst - 50'000'000); // back in time
    EXPECT_FALSE(hasRate());
    write(source, 18.0, 0, kFirst - 40'000'000);
    EXPECT_EQ(stored(rate), 1.0);
}

TEST_P(Rate, NeedsTheFlag) {
    write(source, 10.0, 0, kFirst);
    write(source, 15.0, 0, kFirst + 20'000'000);
    EXPECT_FALSE(hasRate());
    setFlag(GetParam().flag, 2);
    write(source, 16.0, 0, kFirst + 30'000'000);
    EXPECT_EQ(stored(rate), 1.0);
}

TEST_P(Rate, NeedsAPreviousValueAndStamp) {
    on();
    write(source, 10.0, 0, kFirst);
    write(source, 32767.0, 0, kFirst + 10'000'000);
    write(source, 12.0, 0, kFirst + 20'000'000);
    EXPECT_FALSE(hasRate());
    raw.put<std::int64_t>(place::fullStamp(source, 0), INT64_MAX);
    write(source, 13.0, 0, kFirst + 30'000'000);
    EXPECT_FALSE(hasRate());
    write(source, 14.0, 0, kFirst + 40'000'000);
    EXPECT_EQ(stored(rate), 1.0);
}

TEST_P(Rate, IsNotDerivedFromAValueOutOfRange) {
    on();
    write(source, 10.0, 0, kFirst);
    write(source, 1000.0, 0, kFirst + 10'000'000);
    EXPECT_FALSE(hasRate());
}

TEST_P(Rate, GoesInWhateverItsOwnChannelRefuses) {
    on();
    raw.put<std::uint8_t>(place::blocked(rate), 1);
    write(source, 10.0, 0, kFirst);
    write(source, 12.0, 0, kFirst + 10'000'000);
    EXPECT_EQ(stored(rate), 2.0);
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(rate)), 0);
}

TEST_P(Rate, IsKeptForBoats0And1Only) {
    on();
    for (BoatIndex boat : {BoatIndex{1}, BoatIndex{2}, BoatIndex{50}}) {
        write(source, 10.0, boat, kFirst);
        EXPECT_TRUE(write(source, 12.0, boat, kFirst + 10'000'000));
    }
    EXPECT_FALSE(hasRate(0));
    EXPECT_EQ(stored(rate, 1), 2.0);
    EXPECT_EQ(storedHeader(rate, 1), static_cast<std::uint64_t>(kFirst));
    EXPECT_FALSE(store.fetch(rate, 2).holdsValue);
}

TEST_P(Rate, OfStampsAtBothEndsOfTimeDoesNoHarm) {
    on();
    for (std::int64_t previous : {INT64_MIN, INT64_MIN + 1, std::int64_t{0}, INT64_MAX - 1})
        for (std::int64_t next : {INT64_MIN, std::int64_t{0}, INT64_MAX - 1}) {
            write(source, 10.0, 0, previous);
            EXPECT_TRUE(write(source, 12.0, 0, next));
            EXPECT_EQ(stored(source), 12.0);
            EXPECT_EQ(stampOf(source), next);
        }
}

TEST_F(Derived, TurnRateDoesNotWrapAround) {
    setFlag(kTurnFlag);
    write(kHdg, 350.0, 0, 1000);
    write(kHdg, 10.0, 0, 1000 + 20'000'000);
    EXPECT_EQ(stored(kRot), -170.0);
}

TEST_F(Derived, TurnRateUsesTheNormalisedHeading) {
    setFlag(kTurnFlag);
    write(kHdg, 5.0, 0, 1000);
    write(kHdg, 370.0, 0, 1000 + 10'000'000);
    EXPECT_EQ(stored(kRot), 5.0);
}

TEST_F(Derived, RatesHaveFlagsOfTheirOwn) {
    setFlag(kTurnFlag);
    write(kHeel, 10.0, 0, 1000);
    write(kHeel, 12.0, 0, 1000 + 10'000'000);
    EXPECT_FALSE(derived(kHeelRate));
    setFlag(kTurnFlag, 0);
    setFlag(kRatesFlag);
    write(kHdg, 10.0, 0, 1000);
    write(kHdg, 12.0, 0, 1000 + 10'000'000);
    EXPECT_FALSE(derived(kRot));
}

// --- GPS time

class GpsOffset : public Derived {
  protected:
    bool writeTime(std::int64_t ticks, BoatIndex boat = 0, std::int64_t stamp = kStampNow) {
        return store.store(kGpsTime, Record::ofTicks(ticks), boat, stamp);
    }
};

TEST_F(GpsOffset, IsTheClockMinusTheWrittenTime) {
    EXPECT_TRUE(writeTime(machine.now - 12'345'678));
    EXPECT_EQ(raw.get<std::int64_t>(place::fullValue(kGpsOffset, 0) + 8), 12'345'678);
    EXPECT_EQ(stampOf(kGpsOffset), machine.now);
    EXPECT_TRUE(writeTime(machine.now + 20'000'000, 1));
    EXPECT_EQ(raw.get<std::int64_t>(place::fullValue(kGpsOffset, 1) + 8), -20'000'000);
}

TEST_F(GpsOffset, TakesNowFromTheClockAndTheStampFromTheWrite) {
    machine.tick = 3;
    const auto now = machine.now + 3;
    EXPECT_TRUE(writeTime(now - 500, 0, 4711));
    EXPECT_EQ(raw.get<std::int64_t>(place::fullValue(kGpsOffset, 0) + 8), 500);
    EXPECT_EQ(stampOf(kGpsOffset), 4711);
    EXPECT_EQ(stampOf(kGpsTime), 4711);
    EXPECT_EQ(machine.now, now);
}

TEST_F(GpsOffset, RecordHasKindZeroAndAZeroHeader) {
    writeTime(machine.now - 0x1234);
    EXPECT_EQ(storedHeader(kGpsOffset), 0U);
    EXPECT_EQ(storedBits(kGpsOffset), 0x1234U);
    EXPECT_EQ(read(kGpsOffset), 0x34); // a plain read gives the payload's first byte
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(kGpsOffset)), 0);
}

TEST_F(GpsOffset, CountsTheBoat) {
    writeTime(machine.now, 1);
    EXPECT_EQ(boatCount(), 2U);
    EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(1)), 1);
}

TEST_F(GpsOffset, GoesInWhateverItsOwnChannelRefuses) {
    raw.put<std::uint8_t>(place::blocked(kGpsOffset), 1);
    writeTime(machine.now - 7);
    EXPECT_EQ(storedBits(kGpsOffset), 7U);
}

TEST_F(GpsOffset, NeedsATimeChannel) {
    raw.put<std::int16_t>(place::unitClass(kGpsOffset), 0);
    const auto before = storedBits(kGpsOffset);
    writeTime(machine.now - 7);
    EXPECT_EQ(storedBits(kGpsOffset), before);
    raw.put<std::int16_t>(place::unitClass(kGpsOffset), 1); // the other time class will do
    writeTime(machine.now - 7);
    EXPECT_EQ(storedBits(kGpsOffset), 7U);
}

TEST_F(GpsOffset, NeedsAValueAndATimeKindOfItsSource) {
    writeTime(INT64_MAX);
    EXPECT_EQ(storedBits(kGpsOffset), 0x7FFFFFFFFFFFFFFFU);
    raw.put<std::int16_t>(place::unitClass(kGpsTime), 0);
    EXPECT_TRUE(store.store(kGpsTime, Record::ofNumber(1.0), 0, kStampNow));
    EXPECT_EQ(storedBits(kGpsOffset), 0x7FFFFFFFFFFFFFFFU);
}

TEST_F(GpsOffset, IsNotMadeForBoatsWithoutItsSlot) {
    const auto before = raw.copy();
    EXPECT_FALSE(writeTime(machine.now - 7, 2));
    const auto after = raw.copy();
    EXPECT_EQ(storedBits(kGpsOffset, 0), 0x7FFFFFFFFFFFFFFFU);
    EXPECT_EQ(storedBits(kGpsOffset, 1), 0U);
    EXPECT_TRUE(std::equal(before.begin() + 119544, before.end(), after.begin() + 119544));
    EXPECT_EQ(boatCount(), 0U);
}

TEST_F(GpsOffset, OfTimesAtBothEndsDoesNoHarm) {
    for (std::int64_t time : {INT64_MIN, INT64_MIN + 1, INT64_MAX - 1}) {
        EXPECT_TRUE(writeTime(time));
        EXPECT_EQ(raw.get<std::int64_t>(place::fullValue(kGpsTime, 0) + 8), time);
    }
}

TEST_F(GpsOffset, OtherTimeChannelsHaveNoRule) {
    EXPECT_TRUE(store.store(204, Record::ofTicks(5), 0, kStampNow));
    EXPECT_EQ(storedBits(kGpsOffset), 0x7FFFFFFFFFFFFFFFU);
}

} // namespace
} // namespace tallowmere::test
