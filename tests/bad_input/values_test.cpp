// Every channel with values at every boundary, every 16-bit number as channel, boat and index: what the exported
// functions store and give is worked out here a second time, from the published list of channels.
#include "tests/channels/raw_section.hpp"
#include "tests/core/core_fixture.hpp"
#include "tests/support/attached_library.hpp"
#include "tests/support/case_count.hpp"

#include <bit>
#include <cmath>
#include <limits>
#include <optional>

namespace tallowmere::test {
namespace {

struct ListedChannel {
    std::size_t index, slot;
    int min, max, timeout, precision, unitClass, ownBoat, dampable, log, sensor;
    const char16_t *shortName, *longName;
};
constexpr ListedChannel kListed[] = {
#define ROW(...) ListedChannel{__VA_ARGS__},
#include "tests/channels/catalogue_rows.inc"
#undef ROW
};

using Limits = std::numeric_limits<double>;

void addWithNeighbours(std::vector<double>& values, double value) {
    values.push_back(value);
    values.push_back(std::nextafter(value, Limits::infinity()));
    values.push_back(std::nextafter(value, -Limits::infinity()));
}

/// Numbers at which something changes, each with the next number to both sides, and those that are none.
std::vector<double> boundaryValues(const ListedChannel& channel) {
    std::vector<double> values{Limits::quiet_NaN(),
                               -Limits::quiet_NaN(),
                               std::bit_cast<double>(std::uint64_t{0x7FF0000000000001}), // signalling
                               std::bit_cast<double>(std::uint64_t{0xFFF4000000000000}),
                               Limits::infinity(),
                               -Limits::infinity(),
                               -0.0,
                               Limits::min(),
                               -Limits::min(),
                               std::nextafter(Limits::min(), 0.0), // the largest subnormal
                               Limits::max(),
                               Limits::lowest(),
                               0.49999999999999994,
                               -0.49999999999999994};
    // 1e15: the spacing of doubles is an eighth there, so halves are exact. 10675199.1: the largest time span.
    for (const double edge : {0.0,
                              0.5,
                              -0.5,
                              1.0,
                              180.0,
                              -180.0,
                              360.0,
                              -360.0,
                              540.0,
                              -540.0,
                              720.0,
                              -720.0,
                              32766.0,
                              32767.0,
                              32768.0,
                              -32767.0,
                              -32768.0,
                              2147483646.5,
                              2147483647.0,
                              2147483647.5,
                              2147483648.0,
                              -2147483648.0,
                              -2147483648.5,
                              4294967296.0,
                              1e15,
                              9.2233720368547758e18,
                              -9.2233720368547758e18,
                              10675199.116730064,
                              -10675199.116730064,
                              -109205.0,
                              10565994.1})
        addWithNeighbours(values, edge);
    addWithNeighbours(values, channel.min);
    addWithNeighbours(values, channel.max);
    return values;
}

struct Expected {
    int kind;              // 1 double, 2 integer, 3 time
    std::uint64_t payload; // bits
    bool holds;
};

constexpr std::uint64_t kNoTimeBits = INT64_MAX;

/// Half away from zero, in a type that holds every 64-bit integer exactly.
template <class Integer> std::optional<Integer> rounded(double value) {
    if (std::isnan(value)) return std::nullopt;
    const long double magnitude = std::floor(std::fabs(static_cast<long double>(value)) + 0.5L);
    const long double whole = value < 0 ? -magnitude : magnitude;
    if (whole < static_cast<long double>(std::numeric_limits<Integer>::min())) return std::nullopt;
    if (whole > static_cast<long double>(std::numeric_limits<Integer>::max())) return std::nullopt;
    return static_cast<Integer>(whole);
}

Expected expectedTime(int unitClass, double days) {
    if (days == 32767.0 || (unitClass == 1 && days == 0.0)) return {3, kNoTimeBits, false};
    const double ticks = unitClass == 1 ? (days + 109205.0) * 8.64e11 : days * 8.64e11;
    const auto whole = rounded<std::int64_t>(ticks);
    if (!whole || *whole == INT64_MAX) return {3, kNoTimeBits, false};
    return {3, static_cast<std::uint64_t>(*whole), true};
}

Expected expectedInteger(double value) {
    const auto whole = value == 32767.0 ? std::nullopt : rounded<std::int32_t>(value);
    const std::int32_t stored = whole.value_or(32767);
    return {2, static_cast<std::uint32_t>(stored), stored != 32767};
}

Expected expectedNumber(const ListedChannel& channel, double value) {
    const bool bearing = channel.unitClass == 6;
    const bool angle = channel.unitClass == 7 || channel.unitClass == 13;
    if (bearing && value < 0 && value + 360 >= 0)
        value += 360;
    else if (bearing && value >= 360 && value - 360 <= 360)
        value -= 360;
    else if (angle && value < -180 && value + 360 >= -180)
        value += 360;
    else if (angle && value > 180 && value - 360 <= 180)
        value -= 360;
    if (channel.min != channel.max && (value < channel.min || value > channel.max)) value = 32767.0;
    return {1, std::bit_cast<std::uint64_t>(value), value != 32767.0};
}

Expected expectedRecord(const ListedChannel& channel, double value) {
    if (channel.unitClass == 1 || channel.unitClass == 2) return expectedTime(channel.unitClass, value);
    if (channel.unitClass == 11) return expectedInteger(value);
    return expectedNumber(channel, value);
}

double expectedReading(const ListedChannel& channel, const Expected& record) {
    const auto ticks = static_cast<std::int64_t>(record.payload);
    if (record.kind == 1) return std::bit_cast<double>(record.payload);
    if (record.kind == 2) return static_cast<std::int32_t>(record.payload);
    if (channel.unitClass == 2) return static_cast<double>(ticks) / 8.64e11;
    // To whole seconds: 5,000,000 more, then a division that cuts toward zero; without the sum's overflow.
    const std::int64_t seconds = ticks < 0 ? (ticks + 5'000'000) / 10'000'000
                                           : ticks / 10'000'000 + (ticks % 10'000'000 + 5'000'000) / 10'000'000;
    return static_cast<double>(seconds * 10'000'000) / 8.64e11 - 109205.0;
}

class BadValues : public CoreTest {
  protected:
    void acceptFixes() { section().put<std::int32_t>(place::integer(6), 3); }

    std::unique_ptr<CCore> core = start();
    AttachedLibrary library{*core};
};

TEST_F(BadValues, EveryChannelStoresAndGivesWhatTheRulesSay) {
    acceptFixes();
    CaseCount cases("values");
    std::size_t wrong = 0;
    for (const std::uint16_t boat : std::initializer_list<std::uint16_t>{0, 1, 2, 99})
        for (const ListedChannel& listed : kListed) {
            if (listed.index == 0) continue;
            const auto channel = static_cast<std::uint16_t>(listed.index);
            const bool kept = boat < 2 || listed.slot < 34;
            const bool alternating = channel >= 117 && channel <= 126;
            for (const double value : boundaryValues(listed)) {
                ++cases;
                const Expected expected = expectedRecord(listed, value);
                bool good = SetZanVar(channel, value, boat) == (kept ? 1 : 0);
                if (kept && !alternating) {
                    ChannelValue record{};
                    std::uint16_t source = 0;
                    good &= GetZanVar2(channel, &record, boat, &source) == (expected.holds ? 1 : 0);
                    std::uint64_t payload = 0;
                    std::memcpy(&payload, &record.payload, 8);
                    good &= source == channel && record.kind == expected.kind && payload == expected.payload;
                    double read = -987.25;
                    const bool has = GetZanVar(channel, &read, boat, &source) != 0;
                    const double reading = expected.holds ? expectedReading(listed, expected) : -987.25;
                    good &= has == (expected.holds && reading != 32767.0);
                    good &= std::bit_cast<std::uint64_t>(read) == std::bit_cast<std::uint64_t>(reading);
                }
                if (!good && ++wrong < 10) ADD_FAILURE() << channel << " of boat " << boat << ": " << value;
            }
        }
    EXPECT_EQ(wrong, 0U);
    EXPECT_GT(cases.count(), 150'000U);
}

TEST_F(BadValues, RecordsOfEveryKindAreStoredAsTheyComeButForRangesOfNumbers) {
    acceptFixes();
    CaseCount cases("records");
    std::size_t wrong = 0;
    for (const ListedChannel& listed : kListed) {
        if (listed.index == 0 || (listed.index >= 117 && listed.index <= 126)) continue;
        const auto channel = static_cast<std::uint16_t>(listed.index);
        const bool number = listed.unitClass != 1 && listed.unitClass != 2 && listed.unitClass != 11;
        for (const std::uint64_t header : {0x00ULL, 0x01ULL, 0x02ULL, 0x03ULL, 0x04ULL, 0xFFFFFFFFFFFFFFFFULL})
            for (const double value : boundaryValues(listed)) {
                ++cases;
                auto bits = std::bit_cast<std::uint64_t>(value);
                ChannelValue given;
                std::memcpy(&given, &header, 8);
                std::memcpy(reinterpret_cast<char*>(&given) + 8, &bits, 8);
                bool good = SetZanVar2(channel, &given, 1) == 1;
                if (number && value != 32767.0) bits = expectedNumber(listed, value).payload;
                const std::uint64_t none = number ? kNoValueBits : listed.unitClass == 11 ? 32767 : kNoTimeBits;
                const bool holds = listed.unitClass == 11 ? static_cast<std::uint32_t>(bits) != none : bits != none;
                ChannelValue got;
                std::uint16_t source = 0;
                good &= GetZanVar2(channel, &got, 1, &source) == (holds ? 1 : 0);
                good &= std::memcmp(&got, &header, 8) == 0;
                good &= std::memcmp(reinterpret_cast<char*>(&got) + 8, &bits, 8) == 0;
                double read = 0;
                (void)GetZanVar(channel, &read, 1, &source); // any kind byte: only no harm
                if (!good && ++wrong < 10) ADD_FAILURE() << channel << ", header " << header << ": " << value;
            }
    }
    EXPECT_EQ(wrong, 0U);
}

TEST_F(BadValues, ProtectedChannelsOfTheOwnBoatAnswerOneAndKeepWhatTheyHad) {
    CaseCount cases("values");
    for (const ListedChannel& listed : kListed) {
        if (listed.ownBoat == 0) continue;
        const auto channel = static_cast<std::uint16_t>(listed.index);
        for (const double value : boundaryValues(listed)) {
            ++cases;
            double read = -1;
            std::uint16_t source = 0;
            EXPECT_EQ(SetZanVar(channel, value, 0), 1);
            EXPECT_EQ(GetZanVar(channel, &read, 0, &source), 0);
        }
    }
}

TEST_F(BadValues, EveryNumberAsChannelBoatAndIndexIsAnswered) {
    CaseCount cases("calls");
    const ChannelValue given{};
    for (unsigned number = 0; number <= 65535; ++number) {
        const auto index = static_cast<std::uint16_t>(number);
        for (const std::uint16_t boat :
             {std::uint16_t{0}, std::uint16_t{99}, std::uint16_t{100}, std::uint16_t{65535}}) {
            if (number < 414 && boat < 100) continue;
            double value = -1;
            std::uint16_t source = 0;
            ChannelValue record{};
            ASSERT_EQ(GetZanVar(index, &value, boat, &source), 0);
            ASSERT_TRUE(value == 32767.0 && source == 32767);
            ASSERT_EQ(GetZanVar2(index, &record, boat, &source), 0);
            ASSERT_TRUE(record.kind == 1 && record.payload.number == 32767.0);
            ASSERT_EQ(SetZanVar(index, 1.0, boat), static_cast<std::uint8_t>(number - 1));
            ASSERT_EQ(SetZanVar2(index, &given, boat), static_cast<std::uint8_t>(number - 1));
            for (int i = 0; i < 4; ++i) ++cases;
        }
        double variable = -1;
        const bool has = GetSysVar(index, &variable) != 0;
        ASSERT_EQ(has, variable != 32767.0);
        ASSERT_TRUE(number < 80 || !has);
        std::uint8_t flag = 77;
        ASSERT_EQ(GetSysBool(index, &flag), number < 60 ? 1 : 0);
        ASSERT_TRUE(number < 60 ? flag <= 1 : flag == 77);
        char name[16] = "untouched";
        GetZanVarName(index, name);
        ASSERT_EQ(std::string(name) == "untouched", number >= 414);
        for (int i = 0; i < 3; ++i) ++cases;
    }
    const auto before = section().copy();
    for (unsigned number = 0; number <= 65535; ++number) {
        if (number <= 31 || (number >= 172 && number <= 203)) continue;
        SetZanUserVarName(static_cast<std::uint16_t>(number), "Name");
        ++cases;
    }
    EXPECT_EQ(changesOutside(before, section().copy(), {}), "");
}

TEST_F(BadValues, SystemIntegersAndVariablesTakeAnyIndexAndValueWithinTheirLimits) {
    CaseCount cases("indices and values");
    SystemValues system = core->system();
    for (const std::size_t index : {std::size_t{13}, std::size_t{14}, std::size_t{65535}, SIZE_MAX}) {
        const auto before = section().copy();
        system.setInteger(index, 1);
        system.setVariable(index + 67, 1.0); // 80 and above
        system.setFlag(index + 47, 1);       // 60 and above
        EXPECT_EQ(system.integer(index), 0);
        if (index != SIZE_MAX) {
            EXPECT_EQ(changesOutside(before, section().copy(), {}), "");
        }
        ++cases;
    }
    constexpr std::int32_t kHighest[] = {INT32_MAX, 2, 2, 5, 5, 1, 4, INT32_MAX, 2, 4, INT32_MAX, INT32_MAX, INT32_MAX};
    for (std::size_t index = 0; index < 13; ++index)
        for (const std::int64_t value :
             {std::int64_t{INT32_MIN}, std::int64_t{-1}, std::int64_t{0}, std::int64_t{1}, std::int64_t{2},
              std::int64_t{3}, std::int64_t{4}, std::int64_t{5}, std::int64_t{6}, std::int64_t{INT32_MAX}}) {
            ++cases;
            system.setInteger(index, static_cast<std::int32_t>(value));
            const std::int64_t lowest = index >= 10 ? INT32_MIN : 0;
            EXPECT_EQ(system.integer(index), std::clamp<std::int64_t>(value, lowest, kHighest[index])) << index;
        }
    for (std::size_t index = 0; index < 80; ++index)
        for (const double value : boundaryValues(kListed[1])) {
            ++cases;
            system.setVariable(index, value);
            double expected = value;
            if (index == 0 && !(value >= 1.0)) expected = 1.0;
            if (index == 5) expected = !(value >= 0.01) ? 0.01 : value > 10.0 ? 10.0 : value;
            EXPECT_EQ(std::bit_cast<std::uint64_t>(section().get<double>(place::variable(index))),
                      std::bit_cast<std::uint64_t>(expected))
                << index << " " << value;
        }
}

TEST_F(BadValues, AMarkIsStoredBitByBitWhateverItsPosition) {
    section().put<std::uint64_t>(place::kHostWindow, 0x1234);
    CaseCount cases("positions");
    for (const double value : boundaryValues(kListed[48])) {
        ++cases;
        EXPECT_EQ(SetMOB(value, -value), 1);
        EXPECT_EQ(section().get<std::uint64_t>(place::kMobLatitude), std::bit_cast<std::uint64_t>(value));
        EXPECT_EQ(section().get<std::uint64_t>(place::kMobLongitude), std::bit_cast<std::uint64_t>(-value));
    }
}

} // namespace
} // namespace tallowmere::test
