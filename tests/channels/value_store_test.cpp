// The write path and the read path: refusals, normalisation, range, what a write leaves in the section.
#include "tests/channels/store_fixture.hpp"

#include <cmath>
#include <limits>

namespace tallowmere::test {
namespace {

constexpr ChannelIndex kBsp = 1;
constexpr ChannelIndex kAwa = 2;
constexpr ChannelIndex kTwd = 6;
constexpr ChannelIndex kRudderFwd = 7; // no compact slot
constexpr ChannelIndex kHeel = 18;
constexpr ChannelIndex kSail = 269;

constexpr Stretch kClockOfBoats0And1[] = {{59096, 8}, {62416, 8}, {69040, 8}, {75664, 8}};

class Write : public StoreTest {
  protected:
    /// Runs a write and names every byte that changed outside the clock channel and the given places.
    template <class Action> std::string changesBeside(std::initializer_list<Stretch> places, Action action) {
        const auto before = raw.copy();
        action();
        auto after = raw.copy();
        for (std::size_t boat = 0; boat < 2; ++boat)
            for (const Stretch& stretch : kClockOfBoats0And1)
                for (std::size_t i = 0; i < stretch.size; ++i) {
                    const std::size_t at = stretch.offset + 30224 * boat + i;
                    after[at] = before[at];
                }
        return changesOutside(before, after, places);
    }
};

TEST_F(Write, ValueAndStampOfTheOwnBoatLandInItsBlock) {
    const auto changes = changesBeside({{place::fullStamp(kBsp, 0), 8},
                                        {place::fullValue(kBsp, 0), 16},
                                        {place::written(kBsp), 1},
                                        {place::kFlagSomethingWritten, 1},
                                        {place::hasData(0), 1},
                                        {place::kBoatCount, 4}},
                                       [&] { EXPECT_TRUE(write(kBsp, 6.4)); });
    EXPECT_EQ(changes, "");
    EXPECT_EQ(stampOf(kBsp), machine.now);
    EXPECT_EQ(storedHeader(kBsp), 1U);
    EXPECT_EQ(storedBits(kBsp), bitsOf(6.4));
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(kBsp)), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::kFlagSomethingWritten), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(0)), 1);
    EXPECT_EQ(boatCount(), 1U);
}

TEST_F(Write, ValueOfBoatOneLandsInTheSecondBlock) {
    const auto changes = changesBeside({{place::fullStamp(413, 1), 8},
                                        {place::fullValue(413, 1), 16},
                                        {place::written(413), 1},
                                        {place::kFlagSomethingWritten, 1},
                                        {place::hasData(1), 1},
                                        {place::kBoatCount, 4}},
                                       [&] { EXPECT_TRUE(write(413, 11.5, 1)); });
    EXPECT_EQ(changes, "");
    EXPECT_EQ(stampOf(413, 1), machine.now);
    EXPECT_EQ(storedBits(413, 1), bitsOf(11.5));
    EXPECT_EQ(boatCount(), 2U);
}

TEST_F(Write, ValueOfAnotherBoatLandsInItsCompactSlot) {
    const auto changes = changesBeside({{place::compactStamp(10, 99), 8},
                                        {place::compactValue(10, 99), 16},
                                        {place::written(kBsp), 1},
                                        {place::kFlagSomethingWritten, 1},
                                        {place::hasData(99), 1},
                                        {place::kBoatCount, 4}},
                                       [&] { EXPECT_TRUE(write(kBsp, 6.4, 99)); });
    EXPECT_EQ(changes, "");
    EXPECT_EQ(raw.get<std::int64_t>(place::compactStamp(10, 99)), machine.now);
    EXPECT_EQ(raw.get<std::uint64_t>(place::compactValue(10, 99)), 1U);
    EXPECT_EQ(raw.get<double>(place::compactValue(10, 99) + 8), 6.4);
    EXPECT_EQ(boatCount(), 100U);
}

TEST_F(Write, ChannelWithoutACompactSlotIsDroppedForOtherBoats) {
    const auto changes = changesBeside({{place::written(kRudderFwd), 1}, {place::kFlagSomethingWritten, 1}},
                                       [&] { EXPECT_FALSE(write(kRudderFwd, 5.0, 5)); });
    EXPECT_EQ(changes, "");
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(kRudderFwd)), 1); // set all the same
    EXPECT_EQ(raw.get<std::uint8_t>(place::kFlagSomethingWritten), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(5)), 0);
    EXPECT_EQ(boatCount(), 0U);
    EXPECT_FALSE(store.fetch(kRudderFwd, 5).holdsValue);
}

TEST_F(Write, ClearingStoresANoValueRecordAndLeavesTheRest) {
    const auto changes = changesBeside({{place::fullStamp(kBsp, 0), 8}}, [&] { EXPECT_TRUE(write(kBsp, 32767.0)); });
    EXPECT_EQ(changes, "");
    EXPECT_EQ(stampOf(kBsp), machine.now);
    EXPECT_EQ(storedBits(kBsp), kNoValueBits);
    EXPECT_TRUE(write(kBsp, 32767.0, 1));
    EXPECT_EQ(storedHeader(kBsp, 1), 1U);
    EXPECT_EQ(storedBits(kBsp, 1), kNoValueBits);
    EXPECT_EQ(boatCount(), 0U);
}

TEST_F(Write, ClearingAfterAValueKeepsWhatTheValueSet) {
    EXPECT_TRUE(write(kBsp, 6.4, 3));
    EXPECT_TRUE(write(kBsp, 32767.0, 3));
    EXPECT_FALSE(store.fetch(kBsp, 3).holdsValue);
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(kBsp)), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(3)), 1);
    EXPECT_EQ(boatCount(), 4U);
}

TEST_F(Write, ClearingADroppedSlotSetsNothing) {
    EXPECT_EQ(changesBeside({}, [&] { EXPECT_FALSE(write(kRudderFwd, 32767.0, 5)); }), "");
}

TEST_F(Write, GivenStampIsStoredAsItIs) {
    for (std::int64_t stamp : {std::int64_t{0}, std::int64_t{-5}, INT64_MIN, INT64_MAX - 1, std::int64_t{1234567}}) {
        EXPECT_TRUE(write(kBsp, 6.4, 0, stamp));
        EXPECT_EQ(stampOf(kBsp), stamp);
        EXPECT_TRUE(write(kBsp, 6.4, 7, stamp));
        EXPECT_EQ(raw.get<std::int64_t>(place::compactStamp(10, 7)), stamp);
    }
}

TEST_F(Write, ClockIsReadOnce) {
    machine.tick = 7;
    const std::int64_t before = machine.now;
    EXPECT_TRUE(write(kBsp, 6.4));
    EXPECT_EQ(machine.now, before + 7);
    EXPECT_EQ(stampOf(kBsp), before + 7);
    EXPECT_EQ(stampOf(0), before + 7);
    EXPECT_TRUE(write(kBsp, 6.5, 0, 1000));
    EXPECT_EQ(machine.now, before + 14);
    EXPECT_EQ(stampOf(0), before + 14);
    EXPECT_TRUE(write(kBsp, 6.5, 42));
    EXPECT_EQ(machine.now, before + 21);
    EXPECT_EQ(raw.get<std::int64_t>(place::compactStamp(10, 42)), before + 21);
}

TEST_F(Write, RecordIsStoredWithItsHeader) {
    EXPECT_TRUE(store.store(kBsp, Record{0xA1B2C3D4E5F60702, bitsOf(6.4)}, 0, kStampNow));
    EXPECT_EQ(storedHeader(kBsp), 0xA1B2C3D4E5F60702U);
    EXPECT_EQ(storedBits(kBsp), bitsOf(6.4));
    EXPECT_TRUE(store.store(kSail, Record{0x11, 0xFFFFFFFF00000003}, 0, kStampNow));
    EXPECT_EQ(storedHeader(kSail), 0x11U);
    EXPECT_EQ(storedBits(kSail), 0xFFFFFFFF00000003U);
}

// --- refusals

TEST_F(Write, ChannelsOutsideOneTo413AreRefused) {
    for (ChannelIndex channel : {ChannelIndex{0}, ChannelIndex{414}, ChannelIndex{32767}, ChannelIndex{65535}})
        EXPECT_EQ(changesBeside({}, [&] { EXPECT_FALSE(store.store(channel, Record::ofNumber(1.0), 0, kStampNow)); }),
                  "");
    EXPECT_TRUE(write(1, 1.0));
    EXPECT_TRUE(write(413, 1.0));
}

TEST_F(Write, BoatsFrom100OnAreRefused) {
    for (BoatIndex boat : {BoatIndex{100}, BoatIndex{101}, BoatIndex{32767}, BoatIndex{65535}})
        EXPECT_EQ(changesBeside({}, [&] { EXPECT_FALSE(write(kBsp, 1.0, boat)); }), "");
    EXPECT_TRUE(write(kBsp, 1.0, 99));
}

TEST_F(Write, BlockedChannelIsRefusedButTheClockGoesOn) {
    for (int blocked : {1, 2, 0x80, 0xFF}) {
        raw.put<std::uint8_t>(place::blocked(kBsp), static_cast<std::uint8_t>(blocked));
        ++machine.now;
        EXPECT_EQ(changesBeside({}, [&] { EXPECT_FALSE(write(kBsp, 6.4)); }), "");
        EXPECT_EQ(stampOf(0), machine.now);
    }
    EXPECT_TRUE(write(kAwa, 6.4)); // only that channel
    raw.put<std::uint8_t>(place::blocked(kBsp), 0);
    EXPECT_TRUE(write(kBsp, 6.4));
}

TEST_F(Write, WriteLockNeedsBothTheFlagAndTheChannelsByte) {
    raw.put<std::uint8_t>(place::writeLockable(kBsp), 1);
    EXPECT_TRUE(write(kBsp, 6.4));
    raw.put<std::uint8_t>(place::flag(52), 1);
    EXPECT_FALSE(write(kBsp, 6.5));
    EXPECT_EQ(stored(kBsp), 6.4);
    EXPECT_TRUE(write(kAwa, 10.0));
    raw.put<std::uint8_t>(place::flag(52), 0x40); // any byte but 0 counts
    raw.put<std::uint8_t>(place::writeLockable(kBsp), 0x80);
    EXPECT_FALSE(write(kBsp, 6.5, 1));
    EXPECT_FALSE(write(kBsp, 6.5, 4));
    raw.put<std::uint8_t>(place::writeLockable(kBsp), 0);
    EXPECT_TRUE(write(kBsp, 6.5));
}

TEST(WriteWithoutASection, IsRefused) {
    MemoryMachine machine;
    MemoryPlatform platform(machine);
    ValueStore store{Context{platform, nullptr}};
    EXPECT_FALSE(store.store(kBsp, Record::ofNumber(6.4), 0, kStampNow));
    EXPECT_FALSE(store.store(kBsp, Record::ofNumber(6.4), 5, 0));
    (void)store.stampTime();
}

// --- angles and ranges

struct AngleCase {
    double written;
    double stored; // 32767: nothing
};

class BearingWrite : public Write, public ::testing::WithParamInterface<AngleCase> {};

TEST_P(BearingWrite, IsBroughtInto0To360ByOneTurnAtMost) {
    EXPECT_TRUE(write(kTwd, GetParam().written));
    EXPECT_EQ(storedBits(kTwd), bitsOf(GetParam().stored)) << stored(kTwd);
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(kTwd)), GetParam().stored == 32767.0 ? 0 : 1);
}
constexpr AngleCase kBearings[] = {
    {0.0, 0.0},          {-0.0, -0.0},      {359.5, 359.5},        {360.0, 0.0},           {370.0, 10.0},
    {720.0, 360.0},      {720.5, NO_VALUE}, {1e9, NO_VALUE},       {-0.5, 359.5},          {-360.0, 0.0},
    {-360.5, NO_VALUE},  {-1e-300, 360.0},  {kInfinity, NO_VALUE}, {-kInfinity, NO_VALUE}, {32766.0, NO_VALUE},
    {-32767.0, NO_VALUE}};
INSTANTIATE_TEST_SUITE_P(Angles, BearingWrite, ::testing::ValuesIn(kBearings));

class SignedAngleWrite : public Write, public ::testing::WithParamInterface<AngleCase> {};

TEST_P(SignedAngleWrite, IsBroughtIntoMinus180To180ByOneTurnAtMost) {
    for (ChannelIndex channel : {kHeel, kAwa}) { // both classes of signed angles
        EXPECT_TRUE(write(channel, GetParam().written));
        EXPECT_EQ(storedBits(channel), bitsOf(GetParam().stored)) << channel << ": " << stored(channel);
    }
}
constexpr AngleCase kSignedAngles[] = {
    {0.0, 0.0},         {-0.0, -0.0},         {180.0, 180.0},  {180.5, -179.5},       {540.0, 180.0},
    {540.5, NO_VALUE},  {-180.0, -180.0},     {-180.5, 179.5}, {-400.0, -40.0},       {-540.0, -180.0},
    {-540.5, NO_VALUE}, {-600.0, NO_VALUE},   {400.0, 40.0},   {kInfinity, NO_VALUE}, {-kInfinity, NO_VALUE},
    {1e300, NO_VALUE},  {-32767.0, NO_VALUE}, {350.0, -10.0}};
INSTANTIATE_TEST_SUITE_P(Angles, SignedAngleWrite, ::testing::ValuesIn(kSignedAngles));

TEST_F(Write, NaNPassesNormalisationAndRange) {
    for (ChannelIndex channel : {kTwd, kHeel, kAwa, ChannelIndex{3}}) {
        EXPECT_TRUE(write(channel, kNaN));
        EXPECT_EQ(storedBits(channel), bitsOf(kNaN));
        EXPECT_TRUE(store.fetch(channel, 0).holdsValue);
    }
}

TEST_F(Write, ChannelWithoutARangeTakesAnyValue) {
    for (double value :
         {-1e300, kInfinity, -kInfinity, std::nextafter(32767.0, 0.0), std::nextafter(32767.0, 1e9), -1.0}) {
        EXPECT_TRUE(write(kBsp, value));
        EXPECT_EQ(storedBits(kBsp), bitsOf(value));
    }
}

TEST_F(Write, EveryRangeHoldsOnBothSidesOfItsLimits) {
    struct Row {
        int index, compact, min, max, timeout, precision, unitClass, own, damp, log, sensor;
        const char16_t *shortName, *longName;
    };
    constexpr Row kRows[] = {
#define ROW(...) Row{__VA_ARGS__},
#include "tests/channels/catalogue_rows.inc"
#undef ROW
    };
    int ranges = 0;
    for (const Row& row : kRows) {
        const bool angle = row.unitClass == 6 || row.unitClass == 7 || row.unitClass == 13;
        if (row.min == row.max || angle) continue;
        ++ranges;
        const auto channel = static_cast<ChannelIndex>(row.index);
        SCOPED_TRACE(row.index);
        for (double limit : {double(row.min), double(row.max)}) {
            EXPECT_TRUE(write(channel, limit));
            EXPECT_EQ(storedBits(channel), bitsOf(limit));
        }
        for (double beyond :
             {std::nextafter(double(row.min), -1e9), std::nextafter(double(row.max), 1e9), kInfinity, -kInfinity}) {
            EXPECT_TRUE(write(channel, beyond)); // stored as no value
            EXPECT_EQ(storedBits(channel), kNoValueBits);
        }
    }
    EXPECT_EQ(ranges, 414 - 261 - 12 - 47 - 33);
}

TEST_F(Write, MastAngleIsNormalisedBeforeItsWiderRangeIsChecked) {
    EXPECT_TRUE(write(24, 200.0)); // 200 lies in -180 to 360, yet is a signed angle
    EXPECT_EQ(stored(24), -160.0);
    EXPECT_TRUE(write(24, 541.0));
    EXPECT_EQ(storedBits(24), kNoValueBits);
}

TEST_F(Write, OutOfRangeValueClearsWithoutSettingAnything) {
    const auto changes = changesBeside({{place::fullStamp(kHeel, 0), 8}}, [&] { EXPECT_TRUE(write(kHeel, -600.0)); });
    EXPECT_EQ(changes, "");
    EXPECT_EQ(stampOf(kHeel), machine.now);
}

TEST_F(Write, UserChannelsAreNormalisedByTheirOwnClass) {
    for (ChannelIndex channel : {ChannelIndex{172}, ChannelIndex{202}}) {
        EXPECT_TRUE(write(channel, 370.0));
        EXPECT_EQ(stored(channel), 370.0);
        raw.put<std::int16_t>(place::unitClass(channel), 6);
        EXPECT_TRUE(write(channel, 370.0));
        EXPECT_EQ(stored(channel), 10.0);
        raw.put<std::int16_t>(place::unitClass(channel), 7);
        EXPECT_TRUE(write(channel, 350.0));
        EXPECT_EQ(stored(channel), -10.0);
        EXPECT_TRUE(write(channel, -600.0)); // no range in these rows
        EXPECT_EQ(stored(channel), -600.0);
    }
}

TEST_F(Write, Channel203AndBuiltInChannelsAreNormalisedByTheCataloguesClass) {
    raw.put<std::int16_t>(place::unitClass(203), 6);
    EXPECT_TRUE(write(203, 370.0));
    EXPECT_EQ(stored(203), 370.0);
    raw.put<std::int16_t>(place::unitClass(kBsp), 6);
    EXPECT_TRUE(write(kBsp, 370.0));
    EXPECT_EQ(stored(kBsp), 370.0);
    raw.put<std::int16_t>(place::unitClass(kTwd), 0);
    EXPECT_TRUE(write(kTwd, 370.0));
    EXPECT_EQ(stored(kTwd), 10.0);
}

TEST_F(Write, EachNumberClearsChannel203WithATypeOfTime) {
    for (const std::int16_t type : {std::int16_t{1}, std::int16_t{2}}) {
        raw.put<std::int16_t>(place::unitClass(203), 0);
        EXPECT_TRUE(write(203, 6.5));
        raw.put<std::int16_t>(place::unitClass(203), type);
        EXPECT_TRUE(store.storeDouble(203, 45983.0, 0));
        const RecordResult record = store.fetch(203, 0);
        EXPECT_FALSE(record.holdsValue);
        EXPECT_EQ(record.record, Record::none(StorageKind::Time));
        // A record is stored as it is, and can't be read as a number.
        EXPECT_TRUE(store.store(203, Record::ofTicks(864'000'000'000), 0, kStampNow));
        double value = 1.5;
        EXPECT_FALSE(readValue(memory.area(), 203, 0, value));
        EXPECT_EQ(value, NO_VALUE);
    }
}

TEST_F(Write, ForeignKindByteKeepsItsHeaderWhenThePayloadIsReplaced) {
    EXPECT_TRUE(store.store(kHeel, Record{0x7700, bitsOf(-400.0)}, 0, kStampNow));
    EXPECT_EQ(storedHeader(kHeel), 0x7700U);
    EXPECT_EQ(stored(kHeel), -40.0);
    EXPECT_TRUE(store.store(kHeel, Record{0x99, bitsOf(-600.0)}, 0, kStampNow));
    EXPECT_EQ(storedHeader(kHeel), 0x99U);
    EXPECT_EQ(storedBits(kHeel), kNoValueBits);
}

TEST_F(Write, IntegerAndTimeChannelsHaveNoRange) {
    EXPECT_TRUE(write(kSail, -2000000.0));
    EXPECT_EQ(storedBits(kSail), static_cast<std::uint32_t>(-2000000));
    EXPECT_TRUE(write(kSail, 2.5));
    EXPECT_EQ(read(kSail), 3.0);
    EXPECT_TRUE(write(kSail, -2.5));
    EXPECT_EQ(read(kSail), -3.0);
    EXPECT_TRUE(write(146, 0.0)); // a moment of 0 is none
    EXPECT_EQ(storedBits(146), 0x7FFFFFFFFFFFFFFFU);
    EXPECT_FALSE(store.fetch(146, 0).holdsValue);
}

// --- boat count

TEST_F(Write, BoatCountIsOnlyRaised) {
    EXPECT_TRUE(write(kBsp, 1.0, 5));
    EXPECT_EQ(boatCount(), 6U);
    EXPECT_TRUE(write(kBsp, 1.0, 2));
    EXPECT_EQ(boatCount(), 6U);
    EXPECT_TRUE(write(kBsp, 1.0, 0));
    EXPECT_EQ(boatCount(), 6U);
    EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(5)), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(2)), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(0)), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(3)), 0);
}

TEST_F(Write, HostileBoatCountIsNeitherLoweredNorBelieved) {
    raw.put<std::uint32_t>(place::kBoatCount, 4'000'000'000U);
    EXPECT_TRUE(write(kBsp, 6.4, 5));
    EXPECT_EQ(boatCount(), 4'000'000'000U);
    EXPECT_TRUE(store.fetch(kBsp, 5).holdsValue);
    for (BoatIndex boat : {BoatIndex{100}, BoatIndex{5000}, BoatIndex{65535}})
        EXPECT_EQ(store.fetch(kBsp, boat).record, (Record{1, kNoValueBits})) << boat;
}

// --- reading

class Fetch : public StoreTest {};

TEST_F(Fetch, BoatAtOrAboveTheCountHasNoValue) {
    raw.put<std::uint64_t>(place::compactValue(10, 3), 1);
    raw.put<double>(place::compactValue(10, 3) + 8, 6.4);
    raw.put<std::uint32_t>(place::kBoatCount, 3);
    EXPECT_FALSE(store.fetch(kBsp, 3).holdsValue);
    EXPECT_EQ(store.fetch(kBsp, 3).record, (Record{1, kNoValueBits}));
    raw.put<std::uint32_t>(place::kBoatCount, 4);
    EXPECT_TRUE(store.fetch(kBsp, 3).holdsValue);
    EXPECT_EQ(store.fetch(kBsp, 3).record, (Record{1, bitsOf(6.4)}));
}

TEST_F(Fetch, NothingWrittenGivesTheNoValueRecordOfTheChannel) {
    for (BoatIndex boat : {BoatIndex{0}, BoatIndex{1}, BoatIndex{2}, BoatIndex{99}, BoatIndex{100}, BoatIndex{65535}}) {
        EXPECT_EQ(store.fetch(kBsp, boat).record, (Record{1, kNoValueBits}));
        EXPECT_EQ(store.fetch(kSail, boat).record, (Record{2, 32767}));
        EXPECT_EQ(store.fetch(146, boat).record, (Record{3, 0x7FFFFFFFFFFFFFFF}));
        EXPECT_FALSE(store.fetch(kBsp, boat).holdsValue);
    }
}

TEST_F(Fetch, ChannelsFrom414OnHaveNoValue) {
    write(kBsp, 6.4, 99);
    for (ChannelIndex channel : {ChannelIndex{414}, ChannelIndex{32767}, ChannelIndex{65535}})
        for (BoatIndex boat : {BoatIndex{0}, BoatIndex{1}, BoatIndex{2}, BoatIndex{99}}) {
            EXPECT_EQ(store.fetch(channel, boat).record, (Record{1, kNoValueBits}));
            EXPECT_FALSE(store.fetch(channel, boat).holdsValue);
        }
}

TEST_F(Fetch, ChannelWithoutACompactSlotHasNoValueForOtherBoats) {
    raw.put<std::uint32_t>(place::kBoatCount, 100);
    for (BoatIndex boat = 2; boat < 100; ++boat) EXPECT_FALSE(store.fetch(kRudderFwd, boat).holdsValue);
}

TEST_F(Fetch, RecordComesAsItLies) {
    write(kBsp, 1.0);
    raw.put<std::uint64_t>(place::fullValue(kBsp, 0), 0xFEDCBA9876543210);
    raw.put<std::uint64_t>(place::fullValue(kBsp, 0) + 8, 42);
    EXPECT_EQ(store.fetch(kBsp, 0).record, (Record{0xFEDCBA9876543210, 42}));
    EXPECT_TRUE(store.fetch(kBsp, 0).holdsValue);
}

TEST_F(Fetch, ReadingLeavesSectionAndClockAlone) {
    write(kBsp, 6.4, 3);
    const auto before = raw.copy();
    machine.tick = 7;
    const auto now = machine.now;
    for (ChannelIndex channel = 0; channel < 420; ++channel)
        for (BoatIndex boat = 0; boat < 102; ++boat) (void)store.fetch(channel, boat);
    EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
    EXPECT_EQ(machine.now, now);
}

TEST_F(Fetch, OtherChannelsOfBoatOneReadZeroOnceItHasAValue) {
    EXPECT_FALSE(store.fetch(kAwa, 1).holdsValue);
    EXPECT_TRUE(write(kBsp, 6.4, 1));
    EXPECT_EQ(store.fetch(kAwa, 1).record, (Record{0, 0}));
    EXPECT_TRUE(store.fetch(kAwa, 1).holdsValue);
    EXPECT_EQ(bitsOf(read(kAwa, 1)), bitsOf(0.0));
    EXPECT_EQ(read(kBsp, 1), 6.4);
    EXPECT_EQ(store.fetch(kSail, 1).record, (Record{0, 0}));
    EXPECT_TRUE(store.recordAsDouble(146, store.fetch(146, 1).record).holdsValue);
}

TEST(FetchWithoutASection, GivesTheNoValueRecord) {
    MemoryMachine machine;
    MemoryPlatform platform(machine);
    const ValueStore store{Context{platform, nullptr}};
    EXPECT_EQ(store.fetch(kBsp, 0).record, (Record{1, kNoValueBits}));
    EXPECT_EQ(store.fetch(kSail, 0).record, (Record{2, 32767}));
    EXPECT_EQ(store.fetch(146, 50).record, (Record{3, 0x7FFFFFFFFFFFFFFF}));
    EXPECT_FALSE(store.fetch(kBsp, 0).holdsValue);
}

TEST_F(StoreTest, PlainReadsBeyondTheChannelsAndBoatsGiveNothing) {
    double value = -1;
    EXPECT_FALSE(readValue(memory.area(), static_cast<ChannelIndex>(kChannelCount), 0, value));
    EXPECT_FALSE(readValue(memory.area(), ZAN_BSP, static_cast<BoatIndex>(kBoatCount), value));
    EXPECT_EQ(value, -1);
}

} // namespace
} // namespace tallowmere::test
