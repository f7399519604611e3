// GetZanVar, GetZanVar2, GetSysVar, GetSysBool and the two counts.
#include "tests/api/exports_fixture.hpp"

#include <cmath>

namespace tallowmere::test {
namespace {

class Reads : public ExportsTest {};

TEST_F(Reads, CountsAreFixed) {
    EXPECT_EQ(GetBoatNum(), 100);
    EXPECT_EQ(GetZanVarNum(), 414);
}

TEST_F(Reads, ChannelOrBoatOutOfRangeGivesNoValueAndNoSource) {
    const std::pair<unsigned, unsigned> cases[] = {{414, 0}, {415, 0},   {32767, 0}, {65535, 0},
                                                   {1, 100}, {1, 65535}, {414, 100}, {117, 100}};
    for (const auto& [channel, boat] : cases) {
        const Reading reading = readVar(channel, boat);
        EXPECT_FALSE(reading.holds);
        EXPECT_EQ(bitsOf(reading.value), 0x40DFFFC000000000U) << channel << " " << boat;
        EXPECT_EQ(reading.source, 32767) << channel << " " << boat;
    }
}

TEST_F(Reads, RecordOutOfRangeIsKindOneWithNoValue) {
    for (auto [channel, boat] : {std::pair<std::uint16_t, std::uint16_t>{414, 0}, {65535, 0}, {1, 100}, {269, 100}}) {
        ChannelValue record;
        std::memset(&record, 0x5A, sizeof record);
        std::uint16_t source = 4444;
        EXPECT_EQ(GetZanVar2(channel, &record, boat, &source), 0);
        EXPECT_EQ(record.kind, 1);
        EXPECT_EQ(payloadOf(record), 0x40DFFFC000000000U);
        EXPECT_EQ(source, 32767);
    }
}

TEST_F(Reads, ChannelWithoutAValueLeavesTheCallersValue) {
    for (unsigned boat : {0U, 1U, 2U, 99U}) {
        const Reading reading = readVar(1, boat);
        EXPECT_FALSE(reading.holds);
        EXPECT_EQ(reading.value, kUntouched);
        EXPECT_EQ(reading.source, 1);
    }
}

TEST_F(Reads, RecordOfAChannelWithoutAValueIsItsNoValueRecord) {
    const std::tuple<std::uint16_t, std::uint64_t, std::uint64_t> cases[] = {
        {1, 1, 0x40DFFFC000000000}, {269, 2, 32767}, {146, 3, 0x7FFFFFFFFFFFFFFF}, {204, 3, 0x7FFFFFFFFFFFFFFF}};
    for (const auto& [channel, header, payload] : cases)
        for (std::uint16_t boat : std::initializer_list<std::uint16_t>{0, 1, 2, 99}) {
            ChannelValue record;
            std::memset(&record, 0x5A, sizeof record);
            std::uint16_t source = 4444;
            EXPECT_EQ(GetZanVar2(channel, &record, boat, &source), 0);
            EXPECT_EQ(headerOf(record), header);
            EXPECT_EQ(payloadOf(record), payload);
            EXPECT_EQ(source, channel);
        }
}

TEST_F(Reads, WrittenValueIsReadAtOnce) {
    EXPECT_EQ(SetZanVar(1, 6.4, 0), 1);
    const Reading reading = readVar(1);
    EXPECT_TRUE(reading.holds);
    EXPECT_EQ(bitsOf(reading.value), bitsOf(6.4));
    EXPECT_EQ(reading.source, 1);
    ChannelValue record;
    std::uint16_t source = 0;
    EXPECT_NE(GetZanVar2(1, &record, 0, &source), 0);
    EXPECT_EQ(headerOf(record), 1U);
    EXPECT_EQ(record.payload.number, 6.4);
    EXPECT_EQ(source, 1);
}

TEST_F(Reads, BoatThatIsTheCountHasNoValue) {
    SetZanVar(1, 6.4, 2);
    EXPECT_EQ(raw.get<std::uint32_t>(place::kBoatCount), 3U);
    EXPECT_FALSE(readVar(1, 3).holds);
    EXPECT_TRUE(readVar(1, 2).holds);
}

TEST_F(Reads, OtherChannelsOfBoatOneReadZeroAfterItsFirstWrite) {
    EXPECT_FALSE(readVar(3, 1).holds);
    SetZanVar(1, 6.4, 1);
    const Reading reading = readVar(3, 1);
    EXPECT_TRUE(reading.holds);
    EXPECT_EQ(bitsOf(reading.value), 0U);
}

TEST_F(Reads, NaNIsAValue) {
    SetZanVar(1, std::numeric_limits<double>::quiet_NaN(), 0);
    const Reading reading = readVar(1);
    EXPECT_TRUE(reading.holds);
    EXPECT_TRUE(std::isnan(reading.value));
}

TEST_F(Reads, RecordThatCannotBeConvertedReads32767) {
    for (std::uint64_t kind : {3U, 4U, 255U}) {
        const ChannelValue record = recordOf(kind, bitsOf(6.4));
        EXPECT_EQ(SetZanVar2(1, &record, 0), 1);
        const Reading reading = readVar(1);
        EXPECT_FALSE(reading.holds);
        EXPECT_EQ(bitsOf(reading.value), 0x40DFFFC000000000U);
        EXPECT_EQ(reading.source, 1);
        ChannelValue read;
        std::uint16_t source = 0;
        EXPECT_NE(GetZanVar2(1, &read, 0, &source), 0); // as a record it holds a value
        EXPECT_EQ(headerOf(read), kind);
        EXPECT_EQ(payloadOf(read), bitsOf(6.4));
    }
}

TEST_F(Reads, HostileBoatCountOpensNoBoatBeyondTheLast) {
    raw.put<std::uint32_t>(place::kBoatCount, 4'000'000'000U);
    EXPECT_FALSE(readVar(1, 100).holds);
    EXPECT_EQ(readVar(1, 65535).source, 32767);
    EXPECT_FALSE(readVar(1, 99).holds);
}

TEST_F(Reads, ClockReadsAsAMoment) {
    SetZanVar(1, 6.4, 0);
    const Reading reading = readVar(0);
    EXPECT_TRUE(reading.holds);
    EXPECT_EQ(reading.source, 0);
    EXPECT_GT(reading.value, 45292.0); // 2024-01-01
    const double stamp = static_cast<double>(raw.get<std::int64_t>(place::fullStamp(1, 0))) / 8.64e11 - 109205.0;
    EXPECT_NEAR(reading.value, stamp, 1.0 / 86400);
}

TEST_F(Reads, StampOfAWriteIsTheTimeOfDay) {
    SetZanVar(1, 6.4, 0);
    const auto first = raw.get<std::int64_t>(place::fullStamp(1, 0));
    SetZanVar(1, 6.5, 0);
    const auto second = raw.get<std::int64_t>(place::fullStamp(1, 0));
    EXPECT_GE(second, first);
    EXPECT_LT(second - first, 60 * kTicksPerSecond);
    EXPECT_EQ(raw.get<std::int64_t>(place::fullValue(0, 0) + 8), second); // one reading of the clock a write
    EXPECT_EQ(raw.get<std::int64_t>(place::fullValue(0, 1) + 8), second);
}

// --- system variables and flags

TEST_F(Reads, SystemVariableOutOfRangeGivesNoValue) {
    for (std::uint16_t index : std::initializer_list<std::uint16_t>{80, 81, 32767, 65535}) {
        double value = kUntouched;
        EXPECT_EQ(GetSysVar(index, &value), 0) << index;
        EXPECT_EQ(bitsOf(value), 0x40DFFFC000000000U);
    }
}

TEST_F(Reads, SystemVariableWithoutAValueGivesNoValue) {
    double value = kUntouched;
    EXPECT_EQ(GetSysVar(12, &value), 0);
    EXPECT_EQ(bitsOf(value), 0x40DFFFC000000000U);
    value = kUntouched;
    EXPECT_EQ(GetSysVar(79, &value), 0);
    EXPECT_EQ(bitsOf(value), 0x40DFFFC000000000U);
}

TEST_F(Reads, SystemVariableIsReadAsItIs) {
    double value = kUntouched;
    EXPECT_NE(GetSysVar(0, &value), 0);
    EXPECT_EQ(value, 15.85);
    raw.put<double>(place::variable(79), -1e300);
    EXPECT_NE(GetSysVar(79, &value), 0);
    EXPECT_EQ(value, -1e300);
    raw.put<double>(place::variable(3), std::numeric_limits<double>::quiet_NaN());
    EXPECT_NE(GetSysVar(3, &value), 0); // a NaN is a value
    EXPECT_TRUE(std::isnan(value));
}

TEST_F(Reads, SystemFlagOutOfRangeLeavesTheCallersByte) {
    for (std::uint16_t index : std::initializer_list<std::uint16_t>{60, 61, 32767, 65535}) {
        std::uint8_t flag = 0x5A;
        EXPECT_EQ(GetSysBool(index, &flag), 0) << index;
        EXPECT_EQ(flag, 0x5A);
    }
}

TEST_F(Reads, SystemFlagIsReadAsItIs) {
    for (std::uint16_t index = 0; index < 60; ++index) {
        std::uint8_t flag = 0x5A;
        EXPECT_NE(GetSysBool(index, &flag), 0);
        EXPECT_EQ(flag, raw.get<std::uint8_t>(place::flag(index))) << index;
    }
    setFlag(59, 0x80);
    std::uint8_t flag = 0;
    EXPECT_NE(GetSysBool(59, &flag), 0);
    EXPECT_EQ(flag, 0x80);
}

TEST_F(Reads, WriteSetsFlag38) {
    std::uint8_t flag = 0x5A;
    GetSysBool(38, &flag);
    EXPECT_EQ(flag, 0);
    SetZanVar(1, 6.4, 0);
    GetSysBool(38, &flag);
    EXPECT_EQ(flag, 1);
}

TEST_F(Reads, LeaveTheSectionAlone) {
    SetZanVar(1, 6.4, 5);
    const auto before = raw.copy();
    for (unsigned channel = 0; channel < 420; ++channel)
        for (unsigned boat : {0U, 1U, 5U, 99U, 100U}) (void)readVar(channel, boat);
    EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
}

} // namespace
} // namespace tallowmere::test
