// The three arrays of settings that all programs share.
#include "core/channels/system_values.hpp"
#include "tests/channels/store_fixture.hpp"

#include <tuple>

namespace tallowmere::test {
namespace {

class System : public StoreTest {
  protected:
    SystemValues system{memory.area()};
    [[nodiscard]] std::int32_t rawInteger(std::size_t index) const {
        return raw.get<std::int32_t>(place::integer(index));
    }
};

TEST_F(System, VariablesStartAtTheirDefaults) {
    constexpr double kDefaults[12] = {15.85, 15.8, 4.4, 0, 3.0, 1.0, 1.0, 10.0, 5.0, 5.0, 5.0, 3.0};
    for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(bitsOf(system.variable(i)), bitsOf(kDefaults[i])) << i;
    for (std::size_t i = 12; i < 80; ++i) EXPECT_EQ(bitsOf(system.variable(i)), kNoValueBits) << i;
}

TEST_F(System, VariableOutOfRangeHasNoValue) {
    raw.put<std::int32_t>(place::kIntegers, 1); // what lies behind the last variable
    for (std::size_t index : {std::size_t{80}, std::size_t{81}, std::size_t{65535}, SIZE_MAX})
        EXPECT_EQ(bitsOf(system.variable(index)), kNoValueBits);
}

TEST_F(System, VariableIsStoredAtItsPlace) {
    for (std::size_t index : {1U, 12U, 79U}) {
        const auto before = raw.copy();
        EXPECT_TRUE(system.setVariable(index, -123.5));
        EXPECT_EQ(raw.get<double>(place::variable(index)), -123.5);
        EXPECT_EQ(bitsOf(system.variable(index)), bitsOf(-123.5));
        EXPECT_EQ(changesOutside(before, raw.copy(), {{place::variable(index), 8}}), "");
    }
}

TEST_F(System, SettingAVariableOutOfRangeFailsAndChangesNothing) {
    const auto before = raw.copy();
    for (std::size_t index : {std::size_t{80}, std::size_t{65535}, SIZE_MAX})
        EXPECT_FALSE(system.setVariable(index, 1.5));
    EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
}

TEST_F(System, VariableZeroIsAtLeastOne) {
    const std::pair<double, double> cases[] = {{0.5, 1.0},
                                               {1.0, 1.0},
                                               {1.0000000000000002, 1.0000000000000002},
                                               {-9.0, 1.0},
                                               {kNaN, 1.0},
                                               {-kInfinity, 1.0},
                                               {kInfinity, kInfinity},
                                               {40.0, 40.0}};
    for (const auto& [given, kept] : cases) {
        EXPECT_TRUE(system.setVariable(0, given));
        EXPECT_EQ(bitsOf(system.variable(0)), bitsOf(kept)) << given;
    }
}

TEST_F(System, VariableFiveIsHeldBetweenAHundredthAndTen) {
    const std::pair<double, double> cases[] = {
        {50.0, 10.0}, {0.0, 0.01},       {10.0, 10.0},       {0.01, 0.01},       {-1.0, 0.01},     {5.5, 5.5},
        {kNaN, 0.01}, {kInfinity, 10.0}, {-kInfinity, 0.01}, {10.0000001, 10.0}, {0.0099999, 0.01}};
    for (const auto& [given, kept] : cases) {
        EXPECT_TRUE(system.setVariable(5, given));
        EXPECT_EQ(bitsOf(system.variable(5)), bitsOf(kept)) << given;
    }
}

TEST_F(System, OtherVariablesAreStoredAsGiven) {
    for (std::size_t index = 0; index < 80; ++index) {
        if (index == 0 || index == 5) continue;
        for (double value : {0.0, -1e300, kNaN, kInfinity, 32767.0}) {
            EXPECT_TRUE(system.setVariable(index, value));
            EXPECT_EQ(bitsOf(system.variable(index)), bitsOf(value));
        }
    }
}

TEST_F(System, FlagsStartAtTheirDefaults) {
    for (std::size_t index = 0; index < 60; ++index) {
        const bool set = index == 0 || index == 1 || index == 3 || index == 7 || index == 21 || index == 40 ||
                         index == 41 || index == 42;
        EXPECT_EQ(system.flag(index), set ? 1 : 0) << index;
    }
}

TEST_F(System, FlagIsReadBackAsItIs) {
    raw.put<std::uint8_t>(place::flag(59), 0x80);
    EXPECT_EQ(system.flag(59), 0x80);
    system.setFlag(2, 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::flag(2)), 1);
    EXPECT_EQ(system.flag(2), 1);
}

TEST_F(System, FlagOutOfRangeIsZeroAndSettingItDoesNothing) {
    const auto before = raw.copy();
    for (std::size_t index : {std::size_t{60}, std::size_t{61}, std::size_t{65535}, SIZE_MAX}) {
        EXPECT_EQ(system.flag(index), 0);
        system.setFlag(index, 1);
    }
    EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
}

TEST_F(System, IntegersStartAtTheirDefaults) {
    for (std::size_t index = 0; index < 13; ++index)
        EXPECT_EQ(system.integer(index), index == 6 ? 5 : index == 10 ? 60 : 0) << index;
}

TEST_F(System, IntegersAreHeldInTheirRanges) {
    constexpr std::int32_t kNoBound = INT32_MAX;
    constexpr std::int32_t kUpper[10] = {kNoBound, 2, 2, 5, 5, 1, 4, kNoBound, 2, 4};
    for (std::size_t index = 0; index < 10; ++index) {
        for (std::int32_t value : {INT32_MIN, -3, -1, 0, 1, 2, 3, 4, 5, 6, 9, 1000, INT32_MAX}) {
            system.setInteger(index, value);
            EXPECT_EQ(rawInteger(index), value < 0 ? 0 : std::min(value, kUpper[index])) << index << ": " << value;
        }
    }
}

TEST_F(System, IntegersTenToTwelveAreStoredAsGiven) {
    for (std::size_t index = 10; index < 13; ++index)
        for (std::int32_t value : {INT32_MIN, -3, 0, 9, INT32_MAX}) {
            system.setInteger(index, value);
            EXPECT_EQ(rawInteger(index), value);
            EXPECT_EQ(system.integer(index), value);
        }
}

TEST_F(System, IntegerOutOfRangeIsZeroAndSettingItDoesNothing) {
    const auto before = raw.copy();
    for (std::size_t index : {std::size_t{13}, std::size_t{14}, std::size_t{65535}, SIZE_MAX}) {
        EXPECT_EQ(system.integer(index), 0);
        system.setInteger(index, 7);
    }
    EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
}

TEST_F(System, ModeAsksForTheSubModeOnlyUpToOne) {
    raw.put<std::int32_t>(place::integer(6), 3);
    raw.put<std::int32_t>(place::integer(7), 9);
    EXPECT_TRUE(system.inMode(3, 0));
    EXPECT_FALSE(system.inMode(2, 0));
    raw.put<std::int32_t>(place::integer(6), 2);
    EXPECT_TRUE(system.inMode(2, 0));
    for (std::int32_t mode : {0, 1, -1}) {
        raw.put<std::int32_t>(place::integer(6), mode);
        EXPECT_FALSE(system.inMode(mode, 0)) << mode;
        EXPECT_TRUE(system.inMode(mode, 9)) << mode;
    }
}

TEST_F(System, ModeFiveAtStartIsNoHostsMode) {
    EXPECT_FALSE(system.inMode(3, 0));
}

TEST(SystemWithoutASection, HasNoValuesAndTakesNone) {
    SystemValues system(nullptr);
    for (std::size_t index : {0U, 5U, 79U, 80U}) {
        EXPECT_EQ(bitsOf(system.variable(index)), kNoValueBits);
        EXPECT_FALSE(system.setVariable(index, 1.0));
        EXPECT_EQ(system.flag(index), 0);
        EXPECT_EQ(system.integer(index), 0);
        system.setFlag(index, 1);
        system.setInteger(index, 1);
    }
    EXPECT_FALSE(system.inMode(3, 0));
}

} // namespace
} // namespace tallowmere::test
