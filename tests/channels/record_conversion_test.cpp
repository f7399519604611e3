// From a double to a record and back.
#include "tests/channels/store_fixture.hpp"

#include <cmath>
#include <tuple>

namespace tallowmere::test {
namespace {

constexpr double kTicksPerDay = 8.64e11;
constexpr double kDaysFrom1601 = 109205.0;              // 1601-01-01 to 1899-12-30
constexpr double kBelowTwoTo63 = 9223372036854774784.0; // the largest double that fits
constexpr double kTwoTo63 = 9223372036854775808.0;

constexpr ChannelIndex kBsp = 1;
constexpr ChannelIndex kSail = 269;
constexpr ChannelIndex kGpsTime = 146;
constexpr ChannelIndex kTimeToGun = 204;
constexpr ChannelIndex kUser8 = 180;

class DoubleToRecord : public StoreTest {
  protected:
    void expectRecord(ChannelIndex channel, double value, const Record& expected, bool holds) {
        const RecordResult result = store.doubleToRecord(channel, value);
        EXPECT_EQ(result.record.header, expected.header) << channel << " <- " << value;
        EXPECT_EQ(result.record.payload, expected.payload) << channel << " <- " << value;
        EXPECT_EQ(result.holdsValue, holds) << channel << " <- " << value;
    }
    void expectNone(ChannelIndex channel, double value) {
        expectRecord(channel, value, Record::none(storageKindOf(store.area(), channel)), false);
    }
};

TEST_F(DoubleToRecord, NoValueRecordFollowsTheStorageKind) {
    EXPECT_EQ(store.doubleToRecord(kBsp, 32767.0).record, (Record{1, kNoValueBits}));
    EXPECT_EQ(store.doubleToRecord(kSail, 32767.0).record, (Record{2, 32767}));
    EXPECT_EQ(store.doubleToRecord(kGpsTime, 32767.0).record, (Record{3, 0x7FFFFFFFFFFFFFFF}));
    EXPECT_EQ(store.doubleToRecord(kTimeToGun, 32767.0).record, (Record{3, 0x7FFFFFFFFFFFFFFF}));
    EXPECT_EQ(store.doubleToRecord(414, 32767.0).record, (Record{1, kNoValueBits}));
    EXPECT_EQ(store.doubleToRecord(65535, 32767.0).record, (Record{1, kNoValueBits}));
}

TEST_F(DoubleToRecord, NoValueGivesTheNoValueRecordOfEveryChannel) {
    for (ChannelIndex channel = 0; channel < 414; ++channel) expectNone(channel, 32767.0);
}

TEST_F(DoubleToRecord, DoubleChannelKeepsEveryOtherDoubleBitForBit) {
    for (double value : {0.0, -0.0, 6.4, -1e308, std::numeric_limits<double>::denorm_min(), kInfinity, -kInfinity, kNaN,
                         -kNaN, std::nextafter(32767.0, 0.0), std::nextafter(32767.0, 1e9), -32767.0})
        expectRecord(kBsp, value, Record{1, bitsOf(value)}, true);
}

TEST_F(DoubleToRecord, IntegerChannelRoundsHalfAwayFromZero) {
    const std::pair<double, std::int32_t> cases[] = {
        {2.5, 3}, {-2.5, -3}, {2.4999999, 2},           {-2.4, -2}, {0.5, 1},         {-0.5, -1},
        {1.5, 2}, {-0.0, 0},  {0.49999999999999994, 0}, {3.0, 3},   {32766.4, 32766}, {32767.5, 32768},
    };
    for (const auto& [value, rounded] : cases)
        expectRecord(kSail, value, Record{2, static_cast<std::uint32_t>(rounded)}, true);
}

TEST_F(DoubleToRecord, ValueThatRoundsToTheIntegerNoneHoldsNoValue) {
    expectNone(kSail, 32766.5);
    expectNone(kSail, 32767.25);
}

TEST_F(DoubleToRecord, IntegerChannelTakesWhatFitsAndNothingElse) {
    expectRecord(kSail, 2147483647.0, Record{2, 0x7FFFFFFF}, true);
    expectRecord(kSail, 2147483647.25, Record{2, 0x7FFFFFFF}, true);
    expectRecord(kSail, -2147483648.0, Record{2, 0x80000000}, true);
    expectRecord(kSail, -2147483648.25, Record{2, 0x80000000}, true);
    for (double value :
         {2147483647.5, 2147483648.0, -2147483648.5, -2147483649.0, 1e300, -1e300, kInfinity, -kInfinity, kNaN})
        expectNone(kSail, value);
}

TEST_F(DoubleToRecord, MomentCountsDaysFrom1899) {
    // 2025-11-22 00:00 UTC is day 45983.
    expectRecord(kGpsTime, 45983.0, Record{3, 134'082'432'000'000'000}, true);
    expectRecord(kGpsTime, 45983.25, Record{3, 134'082'432'000'000'000 + 216'000'000'000}, true);
    expectRecord(kGpsTime, -kDaysFrom1601, Record{3, 0}, true);
    expectRecord(kGpsTime, -kDaysFrom1601 - 1, Record{3, static_cast<std::uint64_t>(-864'000'000'000)}, true);
}

TEST_F(DoubleToRecord, MomentOfZeroIsNoValue) {
    expectNone(kGpsTime, 0.0);
    expectNone(kGpsTime, -0.0);
    EXPECT_TRUE(store.doubleToRecord(kGpsTime, 1e-3).holdsValue);
}

TEST_F(DoubleToRecord, TimeSpanOfZeroIsAValue) {
    expectRecord(kTimeToGun, 0.0, Record{3, 0}, true);
}

TEST_F(DoubleToRecord, TimeSpanIsRoundedToTheNearestTick) {
    expectRecord(kTimeToGun, 1.0, Record{3, 864'000'000'000}, true);
    expectRecord(kTimeToGun, -0.5, Record{3, static_cast<std::uint64_t>(-432'000'000'000)}, true);
    expectRecord(kTimeToGun, 10.75 / kTicksPerDay, Record{3, 11}, true);
    expectRecord(kTimeToGun, -10.75 / kTicksPerDay, Record{3, static_cast<std::uint64_t>(-11)}, true);
    expectRecord(kTimeToGun, 10.25 / kTicksPerDay, Record{3, 10}, true);
}

TEST_F(DoubleToRecord, OddCountFromTwoTo52OnIsNotRoundedAgain) {
    // These products are whole numbers already; adding a half to them would round to the even neighbour.
    const std::pair<double, std::int64_t> cases[] = {{5212.499568715853, 4'503'599'627'370'497},
                                                     {5212.499568715855, 4'503'599'627'370'499},
                                                     {5212.499568715857, 4'503'599'627'370'501}};
    for (const auto& [days, ticks] : cases) {
        ASSERT_EQ(days * kTicksPerDay, static_cast<double>(ticks));
        expectRecord(kTimeToGun, days, Record{3, static_cast<std::uint64_t>(ticks)}, true);
        expectRecord(kTimeToGun, -days, Record{3, static_cast<std::uint64_t>(-ticks)}, true);
    }
}

TEST_F(DoubleToRecord, LessThanHalfATickIsNone) {
    expectRecord(kTimeToGun, 0.49 / kTicksPerDay, Record{3, 0}, true);
    expectRecord(kTimeToGun, -0.49 / kTicksPerDay, Record{3, 0}, true);
}

TEST_F(DoubleToRecord, TimesThatFitAreStoredAndOthersAreNone) {
    // 10,675,199 days and a little lie below 2 to the 63rd.
    constexpr std::int64_t kLast = 10'675'199LL * 864'000'000'000LL;
    expectRecord(kTimeToGun, 10675199.0, Record{3, static_cast<std::uint64_t>(static_cast<double>(kLast))}, true);
    expectRecord(kTimeToGun, -10675199.0,
                 Record{3, static_cast<std::uint64_t>(-static_cast<std::int64_t>(static_cast<double>(kLast)))}, true);
    expectNone(kTimeToGun, 10675200.0);
    expectNone(kTimeToGun, -10675200.0);
    EXPECT_TRUE(store.doubleToRecord(kGpsTime, 10675199.0 - kDaysFrom1601).holdsValue);
    EXPECT_TRUE(store.doubleToRecord(kGpsTime, -10675199.0 - kDaysFrom1601).holdsValue);
    expectNone(kGpsTime, 10675200.0 - kDaysFrom1601);
    expectNone(kGpsTime, -10675200.0 - kDaysFrom1601);
    for (double value : {1e300, -1e300, kInfinity, -kInfinity, kNaN}) {
        expectNone(kTimeToGun, value);
        expectNone(kGpsTime, value);
    }
}

TEST_F(DoubleToRecord, EdgeOfTheTimeRangeIsExact) {
    // Walk over the doubles around both edges; the product itself says which of them fit.
    for (double edge : {kTwoTo63 / kTicksPerDay, -kTwoTo63 / kTicksPerDay}) {
        double value = edge;
        for (int i = 0; i < 4; ++i) value = std::nextafter(value, 0.0);
        for (int i = 0; i < 9; ++i, value = std::nextafter(value, 2 * edge)) {
            const double ticks = value * kTicksPerDay;
            if (ticks >= kTwoTo63 || ticks < -kTwoTo63)
                expectNone(kTimeToGun, value);
            else
                expectRecord(kTimeToGun, value, Record{3, static_cast<std::uint64_t>(static_cast<std::int64_t>(ticks))},
                             true);
        }
    }
    static_assert(kBelowTwoTo63 < kTwoTo63);
}

TEST_F(DoubleToRecord, TimeKindWithoutATimeClassHoldsNoValue) {
    raw.put<std::int16_t>(place::unitClass(203), 1); // by its settings a time, by the catalogue a plain number
    expectRecord(203, 45983.0, Record{3, 0x7FFFFFFFFFFFFFFF}, false);
    raw.put<std::int16_t>(place::unitClass(kBsp), 2);
    expectRecord(kBsp, 1.0, Record{3, 0x7FFFFFFFFFFFFFFF}, false);
}

TEST_F(DoubleToRecord, ClassOfTheCatalogueDecidesHowATimeIsCounted) {
    raw.put<std::int16_t>(place::unitClass(kTimeToGun), 1); // still a span
    expectRecord(kTimeToGun, 1.0, Record{3, 864'000'000'000}, true);
    raw.put<std::int16_t>(place::unitClass(kUser8), 1); // a user channel follows its settings
    expectRecord(kUser8, 45983.0, Record{3, 134'082'432'000'000'000}, true);
    raw.put<std::int16_t>(place::unitClass(kUser8), 2);
    expectRecord(kUser8, 1.0, Record{3, 864'000'000'000}, true);
}

TEST_F(DoubleToRecord, UnknownUnitClassesKeepADouble) {
    for (std::int16_t unitClass :
         {std::int16_t{-1}, std::int16_t{23}, std::int16_t{257}, std::int16_t{32767}, std::int16_t{-32768}}) {
        raw.put<std::int16_t>(place::unitClass(kSail), unitClass);
        expectRecord(kSail, 2.5, Record{1, bitsOf(2.5)}, true);
    }
}

TEST_F(DoubleToRecord, ChannelsFrom414OnGiveNoDouble) {
    for (ChannelIndex channel : {ChannelIndex{414}, ChannelIndex{32767}, ChannelIndex{65535}})
        expectRecord(channel, 1.0, Record{1, kNoValueBits}, false);
}

class RecordAsDouble : public StoreTest {
  protected:
    void expectDouble(ChannelIndex channel, const Record& record, double value, bool holds) {
        const DoubleResult result = store.recordAsDouble(channel, record);
        EXPECT_EQ(bitsOf(result.value), bitsOf(value)) << result.value << " for " << value;
        EXPECT_EQ(result.holdsValue, holds);
    }
};

TEST_F(RecordAsDouble, KindByteDecidesHowThePayloadIsRead) {
    expectDouble(kBsp, Record{0, 0xFFFFFFFFFFFFFFC8}, 200.0, true);
    expectDouble(kBsp, Record{1, bitsOf(6.4)}, 6.4, true);
    expectDouble(kBsp, Record{2, 0xABCDEF01FFFFFFFE}, -2.0, true);
}

TEST_F(RecordAsDouble, HeaderBytesBehindTheKindPlayNoPart) {
    expectDouble(kBsp, Record{0xFFFFFFFFFFFFFF01, bitsOf(6.4)}, 6.4, true);
}

TEST_F(RecordAsDouble, PayloadOfTheStorageKindWithoutAValueHoldsNone) {
    expectDouble(kBsp, Record{1, kNoValueBits}, 32767.0, false);
    expectDouble(kBsp, Record{0, kNoValueBits}, 32767.0, false); // judged by the channel, not by the kind byte
    expectDouble(kSail, Record{2, 32767}, 32767.0, false);
    expectDouble(kSail, Record{1, 32767}, 32767.0, false);
    expectDouble(kSail, Record{2, 0x1234567800007FFF}, 32767.0, false); // only four bytes count
    expectDouble(kGpsTime, Record{3, 0x7FFFFFFFFFFFFFFF}, 32767.0, false);
    expectDouble(kTimeToGun, Record{3, 0x7FFFFFFFFFFFFFFF}, 32767.0, false);
}

TEST_F(RecordAsDouble, AValueThatReads32767IsReportedAsNone) {
    expectDouble(kBsp, Record{2, 32767}, 32767.0, false);
    expectDouble(kSail, Record{1, kNoValueBits}, 32767.0, false);
}

TEST_F(RecordAsDouble, NaNIsAValue) {
    expectDouble(kBsp, Record{1, bitsOf(kNaN)}, kNaN, true);
    expectDouble(kBsp, Record{1, 0x7FFFFFFFFFFFFFFF}, std::bit_cast<double>(0x7FFFFFFFFFFFFFFF), true);
}

TEST_F(RecordAsDouble, MomentComesInWholeSeconds) {
    constexpr std::int64_t kDay = 134'082'432'000'000'000;
    const auto moment = [&](std::int64_t ticks) { return Record{3, static_cast<std::uint64_t>(ticks)}; };
    const double exact = static_cast<double>(kDay) / kTicksPerDay - kDaysFrom1601;
    expectDouble(kGpsTime, moment(kDay), exact, true);
    EXPECT_EQ(exact, 45983.0);
    expectDouble(kGpsTime, moment(kDay + 4'999'999), exact, true);
    expectDouble(kGpsTime, moment(kDay - 5'000'000), exact, true);
    const double next = static_cast<double>(kDay + 10'000'000) / kTicksPerDay - kDaysFrom1601;
    expectDouble(kGpsTime, moment(kDay + 5'000'000), next, true);
    EXPECT_NE(bitsOf(next), bitsOf(exact));
}

TEST_F(RecordAsDouble, MomentBefore1601IsCutTowardsZero) {
    const auto of = [&](std::int64_t ticks) { return store.recordAsDouble(kGpsTime, Record::ofTicks(ticks)).value; };
    const auto days = [](std::int64_t ticks) { return static_cast<double>(ticks) / kTicksPerDay - kDaysFrom1601; };
    EXPECT_EQ(of(-5'000'000), days(0));
    EXPECT_EQ(of(-14'999'999), days(0));           // -9,999,999 cut towards zero
    EXPECT_EQ(of(-15'000'000), days(-10'000'000)); // -10,000,000
    EXPECT_EQ(of(-24'999'999), days(-10'000'000));
}

TEST_F(RecordAsDouble, MomentsAtTheEndsOfTheCountDoNotOverflow) {
    const auto days = [](std::int64_t ticks) { return static_cast<double>(ticks) / kTicksPerDay - kDaysFrom1601; };
    constexpr std::int64_t kLastSecond = 922'337'203'685LL * 10'000'000LL;
    for (std::int64_t ticks : {INT64_MAX - 1, INT64_MAX - 5'000'000, INT64_MAX - 4'999'999})
        expectDouble(kGpsTime, Record::ofTicks(ticks), days(kLastSecond), true);
    constexpr std::int64_t kFirstSecond = -922'337'203'684LL * 10'000'000LL;
    for (std::int64_t ticks : {INT64_MIN, INT64_MIN + 1})
        expectDouble(kGpsTime, Record::ofTicks(ticks), days(kFirstSecond), true);
}

TEST_F(RecordAsDouble, TimeSpanIsNotRounded) {
    expectDouble(kTimeToGun, Record{3, 1}, 1.0 / kTicksPerDay, true);
    expectDouble(kTimeToGun, Record::ofTicks(-432'000'000'000), -0.5, true);
    expectDouble(kTimeToGun, Record::ofTicks(INT64_MIN), -kTwoTo63 / kTicksPerDay, true);
}

TEST_F(RecordAsDouble, TimeRecordInAChannelThatKeepsDoubles) {
    // By the settings a double channel, by the catalogue a time: the record's own kind is honoured.
    raw.put<std::int16_t>(place::unitClass(kGpsTime), 0);
    raw.put<std::int16_t>(place::unitClass(kTimeToGun), 0);
    expectDouble(kGpsTime, Record{3, 0x7FFFFFFFFFFFFFFF}, 0.0, true);
    const DoubleResult span = store.recordAsDouble(kTimeToGun, Record{3, 0x7FFFFFFFFFFFFFFF});
    EXPECT_TRUE(std::isnan(span.value));
    EXPECT_TRUE(span.holdsValue);
    expectDouble(kTimeToGun, Record::ofTicks(864'000'000'000), 1.0, true);
}

TEST_F(RecordAsDouble, TimeRecordOfAChannelWithoutATimeClassCannotBeConverted) {
    expectDouble(kBsp, Record{3, 864'000'000'000}, 32767.0, false);
    raw.put<std::int16_t>(place::unitClass(203), 1);
    expectDouble(203, Record{3, 864'000'000'000}, 32767.0, false);
}

TEST_F(RecordAsDouble, ForeignKindBytesCannotBeConverted) {
    for (std::uint64_t kind = 4; kind < 256; ++kind) {
        expectDouble(kBsp, Record{kind, bitsOf(6.4)}, 32767.0, false);
        expectDouble(kGpsTime, Record{kind, 1}, 32767.0, false);
    }
}

TEST_F(RecordAsDouble, ChannelsFrom414OnHaveNoValue) {
    for (ChannelIndex channel : {ChannelIndex{414}, ChannelIndex{65535}}) {
        expectDouble(channel, Record{1, bitsOf(6.4)}, 32767.0, false);
    }
}

TEST(RecordConversion, WithoutASectionTheCatalogueDecides) {
    MemoryMachine machine;
    MemoryPlatform platform(machine);
    const ValueStore store{Context{platform, nullptr}};
    EXPECT_EQ(store.doubleToRecord(kSail, 2.5).record, (Record{2, 3}));
    EXPECT_EQ(store.doubleToRecord(kGpsTime, 32767.0).record, (Record{3, 0x7FFFFFFFFFFFFFFF}));
}

TEST(RecordEquality, LooksAtKindAndPayload) {
    EXPECT_EQ(Record::ofNumber(1.5), Record::ofNumber(1.5));
    EXPECT_NE(Record::ofNumber(1.5), Record::ofNumber(2.5));
    EXPECT_NE(Record::ofTicks(0), Record::ofNumber(0.0)) << "the same payload";
}

} // namespace
} // namespace tallowmere::test
