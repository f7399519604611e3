// SetZanVar and SetZanVar2: their odd codes, the own boat's protection, what is stored.
#include "tests/api/exports_fixture.hpp"

#include <functional>

namespace tallowmere::test {
namespace {

/// Both write functions with one argument list.
using Write = std::function<unsigned(std::uint16_t, double, std::uint16_t)>;

unsigned writeDouble(std::uint16_t channel, double value, std::uint16_t boat) {
    return SetZanVar(channel, value, boat);
}
unsigned writeRecord(std::uint16_t channel, double value, std::uint16_t boat) {
    const ChannelValue record = recordOf(1, bitsOf(value));
    return SetZanVar2(channel, &record, boat);
}

class Writes : public ExportsTest, public ::testing::WithParamInterface<bool> {
  protected:
    unsigned write(unsigned channel, double value, unsigned boat) {
        return (GetParam() ? writeRecord : writeDouble)(static_cast<std::uint16_t>(channel), value,
                                                        static_cast<std::uint16_t>(boat));
    }
    void expectRefused(unsigned channel, unsigned boat, unsigned code) {
        const auto before = raw.copy();
        EXPECT_EQ(write(channel, 1.5, boat), code) << channel << " of boat " << boat;
        EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
    }
};
INSTANTIATE_TEST_SUITE_P(DoubleAndRecord, Writes, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "Record" : "Double"; });

TEST_P(Writes, OutOfRangeReturnTheLowByteOfTheChannelLessOne) {
    expectRefused(0, 0, 0xFF);
    expectRefused(414, 0, 0x9D);
    expectRefused(415, 0, 0x9E);
    expectRefused(513, 0, 0x00);
    expectRefused(65535, 0, 0xFE);
    expectRefused(0, 100, 0xFF);
    expectRefused(1, 100, 0x00);
    expectRefused(2, 100, 0x01);
    expectRefused(50, 65535, 49);
    expectRefused(257, 100, 0x00);
    expectRefused(413, 100, 0x9C);
}

TEST_P(Writes, LastChannelAndBoatAreTaken) {
    EXPECT_EQ(write(413, 11.0, 0), 1U);
    EXPECT_EQ(readVar(413).value, 11.0);
    EXPECT_EQ(write(1, 6.4, 99), 1U);
    EXPECT_EQ(readVar(1, 99).value, 6.4);
}

TEST_P(Writes, OwnBoatsFixChannelsReturnOneWithoutStoring) {
    for (unsigned channel :
         {39U, 40U, 41U, 42U, 43U, 44U, 45U, 46U, 47U, 48U, 49U, 50U, 51U, 52U, 146U, 167U, 256U, 381U}) {
        expectRefused(channel, 0, 1);
        EXPECT_FALSE(readVar(channel).holds);
    }
}

TEST_P(Writes, OwnBoatsFixChannelsAreStoredWhenAHostAcceptsThem) {
    acceptFixes();
    for (unsigned channel : {39U, 40U, 43U, 45U, 47U, 48U, 49U, 50U, 51U, 52U, 167U, 381U}) {
        EXPECT_EQ(write(channel, 1.5, 0), 1U) << channel;
        EXPECT_TRUE(readVar(channel).holds) << channel;
        EXPECT_EQ(readVar(channel).value, 1.5) << channel;
    }
}

TEST_P(Writes, OnlyModeThreeAcceptsFixes) {
    for (std::int32_t mode : {-1, 0, 1, 2, 4, 5, 259}) {
        raw.put<std::int32_t>(place::integer(6), mode);
        expectRefused(48, 0, 1);
    }
    raw.put<std::int32_t>(place::integer(7), 9); // the sub-mode plays no part for 3
    acceptFixes();
    EXPECT_EQ(write(48, 51.5, 0), 1U);
    EXPECT_EQ(readVar(48).value, 51.5);
}

TEST_P(Writes, FixesOfOtherBoatsAreStoredRegardless) {
    for (unsigned boat : {1U, 2U, 99U}) {
        EXPECT_EQ(write(48, 51.5, boat), 1U);
        EXPECT_EQ(readVar(48, boat).value, 51.5);
    }
}

TEST_P(Writes, ChannelsBesideTheFixChannelsAreNotProtected) {
    for (unsigned channel : {38U, 53U, 145U, 147U, 166U, 168U, 255U, 257U, 380U, 382U}) {
        write(channel, 1.5, 0);
        EXPECT_TRUE(readVar(channel).holds) << channel;
    }
}

TEST_P(Writes, BlockedChannelReturnsZero) {
    raw.put<std::uint8_t>(place::blocked(1), 1);
    EXPECT_EQ(write(1, 6.4, 0), 0U);
    EXPECT_FALSE(readVar(1).holds);
}

TEST_P(Writes, WriteLockedChannelReturnsZero) {
    raw.put<std::uint8_t>(place::writeLockable(1), 1);
    setFlag(52);
    EXPECT_EQ(write(1, 6.4, 0), 0U);
    EXPECT_EQ(write(2, 6.4, 0), 1U);
    setFlag(52, 0);
    EXPECT_EQ(write(1, 6.4, 0), 1U);
}

TEST_P(Writes, ChannelWithoutACompactSlotReturnsZeroForOtherBoats) {
    EXPECT_EQ(write(7, 5.0, 5), 0U);
    EXPECT_FALSE(readVar(7, 5).holds);
    EXPECT_EQ(raw.get<std::uint32_t>(place::kBoatCount), 0U);
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(7)), 1);
    EXPECT_EQ(write(7, 5.0, 1), 1U);
}

TEST_P(Writes, NoValueClears) {
    EXPECT_EQ(write(1, 6.4, 0), 1U);
    EXPECT_EQ(write(1, 32767.0, 0), 1U);
    EXPECT_FALSE(readVar(1).holds);
}

TEST_P(Writes, AnglesAndRangesAreTreated) {
    EXPECT_EQ(write(6, 370.0, 0), 1U);
    EXPECT_EQ(readVar(6).value, 10.0);
    EXPECT_EQ(write(18, -400.0, 0), 1U);
    EXPECT_EQ(readVar(18).value, -40.0);
    EXPECT_EQ(write(18, -600.0, 0), 1U);
    EXPECT_FALSE(readVar(18).holds);
    EXPECT_EQ(write(3, 150.5, 0), 1U);
    EXPECT_FALSE(readVar(3).holds);
}

TEST_P(Writes, AlternatingChannelIsWrittenItself) {
    raw.put<std::int32_t>(place::alternateCell(0, 0), 1);
    EXPECT_EQ(write(117, 3.5, 0), 1U);
    EXPECT_EQ(raw.get<double>(place::fullValue(117, 0) + 8), 3.5);
    EXPECT_EQ(raw.get<std::uint64_t>(place::fullValue(1, 0) + 8), kNoValueBits);
}

class DoubleWrites : public ExportsTest {};

TEST_F(DoubleWrites, IntegerChannelRoundsHalfAwayFromZero) {
    SetZanVar(269, 2.5, 0);
    EXPECT_EQ(readVar(269).value, 3.0);
    SetZanVar(269, -2.5, 0);
    EXPECT_EQ(readVar(269).value, -3.0);
}

TEST_F(DoubleWrites, ValueThatDoesNotFitClears) {
    for (double value :
         {1e300, -1e300, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        for (std::uint16_t channel : std::initializer_list<std::uint16_t>{269, 204}) {
            SetZanVar(channel, 1.0, 0);
            EXPECT_EQ(SetZanVar(channel, value, 0), 1);
            EXPECT_FALSE(readVar(channel).holds) << channel << " " << value;
        }
}

TEST_F(DoubleWrites, MomentsAreDaysAndZeroIsNone) {
    acceptFixes();
    EXPECT_EQ(SetZanVar(146, 45983.5, 0), 1);
    EXPECT_EQ(readVar(146).value, 45983.5);
    EXPECT_EQ(SetZanVar(146, 0.0, 0), 1);
    EXPECT_FALSE(readVar(146).holds);
}

TEST_F(DoubleWrites, EveryChannelIsReadBackForThreeBoats) {
    acceptFixes();
    for (std::uint16_t boat : std::initializer_list<std::uint16_t>{0, 1, 2}) {
        int kept = 0;
        for (std::uint16_t channel = 1; channel < 414; ++channel) {
            const bool stored = SetZanVar(channel, 2.0, boat) != 0;
            kept += stored;
            if (channel >= 117 && channel <= 126) continue; // these are read elsewhere
            const Reading reading = readVar(channel, boat);
            EXPECT_EQ(reading.holds, stored) << channel;
            EXPECT_EQ(reading.value, stored ? 2.0 : kUntouched) << channel;
            EXPECT_EQ(reading.source, channel);
        }
        EXPECT_EQ(kept, boat < 2 ? 413 : 33);
    }
}

TEST(RecordWrites, AreStoredAsTheyCome) {
    renewSection();
    RawSection raw(liveSection());
    const ChannelValue record = recordOf(0xA1B2C3D4E5F60702, 0x0123456700000005);
    EXPECT_EQ(SetZanVar2(1, &record, 0), 1);
    EXPECT_EQ(raw.get<std::uint64_t>(place::fullValue(1, 0)), 0xA1B2C3D4E5F60702U);
    EXPECT_EQ(raw.get<std::uint64_t>(place::fullValue(1, 0) + 8), 0x0123456700000005U);
    EXPECT_EQ(readVar(1).value, 5.0); // kind 2
}

TEST(RecordWrites, OfTheOwnBoatsFixNeedAHostToo) {
    renewSection();
    const ChannelValue record = recordOf(3, 134'082'432'000'000'000U);
    EXPECT_EQ(SetZanVar2(146, &record, 0), 1);
    EXPECT_FALSE(readVar(146).holds);
    EXPECT_EQ(SetZanVar2(146, &record, 1), 1);
    EXPECT_EQ(readVar(146, 1).value, 45983.0);
}

} // namespace
} // namespace tallowmere::test
