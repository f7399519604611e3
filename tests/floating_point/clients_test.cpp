// The exported functions and the view in a program that has floating-point exceptions unmasked: no number that another
// program leaves in the section, and none that is passed, raises one.
#include "tests/floating_point/numbers.hpp"
#include "tests/floating_point/unmasked.hpp"

#include "tests/api/exports_fixture.hpp"

#include <tallowmere/view.h>

#include <array>
#include <vector>

namespace tallowmere::test {
namespace {

constexpr std::array<std::uint16_t, 4> kBoats{0, 1, 2, 99};
constexpr std::size_t kTargetMargin = 7; // system variable
constexpr std::size_t kWriteLock = 52;   // system flag

class Clients : public ExportsTest {
  protected:
    void SetUp() override {
        ExportsTest::SetUp();
        view_ = tlm_view_open();
        ASSERT_EQ(tlm_view_refresh_now(view_), TLM_VIEW_ATTACHED);
    }
    void TearDown() override { tlm_view_close(view_); }

    /// One number everywhere: every channel's current and third value, old stamps, the system variables, the mark.
    void fill(double number, std::int16_t unitClass, std::uint8_t flags) {
        for (std::uint16_t channel = 0; channel < ZAN_CHANNEL_COUNT; ++channel) {
            if (unitClass != kAsTheyAre) raw.put<std::int16_t>(place::unitClass(channel), unitClass);
            for (std::size_t boat = 0; boat < 2; ++boat) putValue(channel, boat, number);
        }
        raw.put<std::uint32_t>(place::kBoatCount, ZAN_BOAT_COUNT);
        for (std::size_t index = 0; index < 80; ++index) raw.put<double>(place::variable(index), number);
        for (std::size_t index = 0; index < 60; ++index) raw.put<std::uint8_t>(place::flag(index), flags);
        raw.put<double>(place::kMobLatitude, number);
        raw.put<double>(place::kMobLongitude, number);
        acceptFixes();
    }
    void putValue(std::uint16_t channel, std::size_t boat, double number) {
        raw.put<std::int64_t>(place::fullStamp(channel, boat), 1);
        raw.put<std::uint64_t>(place::fullValue(channel, boat), ZAN_KIND_DOUBLE);
        raw.put<double>(place::fullValue(channel, boat) + 8, number);
    }
    /// Cells for the columns from `first` to `last`; none elsewhere.
    void putAlternates(std::size_t row, std::size_t first, std::size_t last) {
        for (std::size_t column = 0; column < 9; ++column) {
            const bool given = column >= first && column <= last;
            raw.put<std::int32_t>(place::alternateCell(row, column), given ? ZAN_BSP : 32767);
        }
    }

    void readAll(std::uint16_t channel) const {
        for (const std::uint16_t boat : kBoats) {
            double value = 0;
            std::uint16_t source = 0;
            ChannelValue record;
            tlm_view_value seen;
            tlm_view_group group;
            GetZanVar(channel, &value, boat, &source);
            GetZanVar2(channel, &record, boat, &source);
            tlm_view_read(view_, channel, boat, &seen);
            tlm_view_read_group(view_, boat, &channel, 1, &seen, &group);
        }
        tlm_view_source(view_, channel);
    }
    static void writeAll(std::uint16_t channel, double number) {
        const ChannelValue record = recordOf(ZAN_KIND_DOUBLE, bitsOf(number));
        for (const std::uint16_t boat : kBoats) {
            SetZanVar(channel, number, boat);
            SetZanVar2(channel, &record, boat);
        }
    }
    void askTheRest() const {
        GetBoatNum();
        GetZanVarNum();
        std::array<char, ZAN_NAME_BYTES> name{};
        tlm_view_channel info;
        for (std::uint16_t channel = 0; channel < ZAN_CHANNEL_COUNT; ++channel) {
            GetZanVarName(channel, name.data());
            tlm_view_get_channel(view_, channel, &info);
            tlm_view_get_catalogue(channel, &info);
        }
        SetZanUserVarName(0, "name");
        double value = 0;
        std::uint8_t flag = 0;
        std::int32_t integer = 0;
        for (std::uint16_t index = 0; index < 81; ++index) {
            GetSysVar(index, &value);
            GetSysBool(index, &flag);
            tlm_view_get_variable(view_, index, &value);
            tlm_view_get_integer(view_, index, &integer);
            tlm_view_get_flag(view_, index, &flag);
        }
        tlm_view_mob mob;
        tlm_view_boat boat;
        tlm_view_get_mob(view_, &mob);
        tlm_view_get_boat(view_, 0, &boat);
        tlm_view_find_channel(view_, "BSP");
        tlm_view_find_boat(view_, "none");
        tlm_view_boat_count(view_);
        tlm_view_host_window(view_);
        tlm_view_is_replay(view_);
        tlm_view_refresh(view_);
        tlm_view_refresh_now(view_);
        tlm_view_state(view_);
        tlm_view_generation(view_);
        tlm_view_now();
    }

    static constexpr std::int16_t kAsTheyAre = -2;
    tlm_view* view_ = nullptr;
};

TEST_F(Clients, AreTold) {
    volatile double zero = 0.0;
    volatile double result = 0.0;
    EXPECT_FALSE(raisesNothing([&] { result = zero / zero; }));
    EXPECT_FALSE(raisesNothing([&] { result = 1.0 / zero; }));
    EXPECT_FALSE(raisesNothing([&] { result = 1e300 / (zero + 1e-300); }));
    EXPECT_TRUE(raisesNothing([&] { result = zero + 1.5; }));
}

TEST_F(Clients, ReadAnyNumberOfTheSection) {
    for (const double number : kOddNumbers)
        for (std::int16_t unitClass = kAsTheyAre; unitClass < 24; ++unitClass) {
            fill(number, unitClass, 1);
            for (std::uint16_t channel = 0; channel < ZAN_CHANNEL_COUNT; ++channel)
                EXPECT_TRUE(raisesNothing([&] { readAll(channel); })) << channel << ' ' << number << ' ' << unitClass;
            EXPECT_TRUE(raisesNothing([&] { askTheRest(); })) << number << ' ' << unitClass;
            renewSection();
        }
}

TEST_F(Clients, WriteAnyNumberOverAnyOther) {
    for (const double number : kOddNumbers)
        for (const double written : kOddNumbers)
            for (std::int16_t unitClass = kAsTheyAre; unitClass < 24; ++unitClass) {
                // Other classes change the rules of angles and times only, which look at one number.
                if (unitClass != kAsTheyAre && bitsOf(written) != bitsOf(number)) continue;
                fill(number, unitClass, 1);
                raw.put<std::uint8_t>(place::flag(kWriteLock), 0);
                for (std::uint16_t channel = 1; channel < ZAN_CHANNEL_COUNT; ++channel)
                    EXPECT_TRUE(raisesNothing([&] { writeAll(channel, written); }))
                        << channel << ' ' << number << ' ' << written << ' ' << unitClass;
                renewSection();
            }
    EXPECT_TRUE(raisesNothing([&] {
        for (const double number : kOddNumbers) SetMOB(number, -number);
    }));
}

TEST_F(Clients, ReadAlternatesByAnyAngleTargetAndMargin) {
    fill(45.0, kAsTheyAre, 0);
    putAlternates(0, 2, 4); // by the target
    putAlternates(1, 2, 7); // and by the tack
    putAlternates(2, 6, 7);
    putAlternates(3, 2, 2);
    putAlternates(4, 4, 4);
    for (const double angle : kOddNumbers)
        for (const double target : kOddNumbers)
            for (const double margin : kOddNumbers) {
                putValue(ZAN_TWA, 0, angle);
                putValue(ZAN_TARG_TWA, 0, target);
                raw.put<double>(place::variable(kTargetMargin), margin);
                for (std::uint16_t channel = ZAN_ALT_0; channel <= ZAN_ALT_9; ++channel)
                    EXPECT_TRUE(raisesNothing([&] { readAll(channel); }))
                        << channel << ' ' << angle << ' ' << target << ' ' << margin;
            }
}

} // namespace
} // namespace tallowmere::test
