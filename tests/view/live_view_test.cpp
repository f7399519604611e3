// A program that has both libraries: what one writes, the other shows.
#include "tests/api/live_section.hpp"

#include <tallowmere/tallowmere.h>
#include <tallowmere/view.hpp>

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace tallowmere::test {
namespace {

using view::Freshness;
using view::State;
using view::View;

constexpr std::size_t kBytes = 253336;
constexpr std::size_t kSettings = 6380;     // of 108 bytes each; the short name at 76
constexpr std::size_t kBoatEntries = 51092; // of 80 bytes each; the name at 6, the MMSI at 72

/// Puts UTF-16 text, unterminated, into the section.
void putText(std::size_t offset, const std::u16string& text) {
    std::memcpy(liveSection() + offset, text.data(), text.size() * sizeof(char16_t));
}

class LiveView : public testing::Test {
  protected:
    void SetUp() override {
        renewSection();
        ASSERT_EQ(view_.refreshNow(), State::Attached);
    }
    View view_;
};

TEST_F(LiveView, ShowsWhatIsWritten) {
    EXPECT_EQ(view_.read(ZAN_BSP).number(), std::nullopt);
    EXPECT_EQ(view_.boatCount(), 0);
    ASSERT_EQ(SetZanVar(ZAN_BSP, 6.4, 0), 1);
    const view::Value value = view_.read(ZAN_BSP);
    EXPECT_EQ(value.number(), 6.4);
    EXPECT_EQ(value.current(), 6.4);
    EXPECT_TRUE(value.ageSeconds().has_value());
    EXPECT_EQ(value.freshness(), Freshness::Fresh);
    EXPECT_EQ(value.source(), ZAN_BSP);
    EXPECT_EQ(view_.boatCount(), 1);

    const view::Group group = view_.read({ZAN_BSP, ZAN_AWA});
    EXPECT_TRUE(group.isOfOneMoment());
    EXPECT_EQ(group.values[0].number(), 6.4);
    EXPECT_EQ(group.values[1].number(), std::nullopt);
    EXPECT_EQ(group.raw.section_generation, view_.generation());
}

TEST_F(LiveView, AGroupHasOneValueOrNone) {
    ASSERT_EQ(SetZanVar(ZAN_BSP, 6.4, 3), 1);
    const view::Group one = view_.read({ZAN_BSP}, 3);
    ASSERT_EQ(one.values.size(), 1U);
    EXPECT_EQ(one.values[0].number(), 6.4);
    EXPECT_EQ(view_.read(std::vector<std::uint16_t>{ZAN_BSP}, 3).values.at(0).number(), 6.4);
    EXPECT_TRUE(view_.read({}).values.empty());
}

TEST_F(LiveView, TellsAReplayByTheOwnBoatsName) {
    EXPECT_FALSE(view_.isReplay());
    putText(kBoatEntries + 6, u"[REPLAY]");
    EXPECT_TRUE(view_.isReplay());
    putText(kBoatEntries + 6, u"[REPLAY] Falcon");
    EXPECT_TRUE(view_.isReplay());
    EXPECT_EQ(view_.boat(0)->name(), "[REPLAY] Falcon") << "as it stands";
    for (const char16_t* name : {u"[REPLAY", u"[Replay] ", u" [REPLAY]", u"Falcon [REPLAY]"}) {
        putText(kBoatEntries + 6, std::u16string(name) + u'\0');
        EXPECT_FALSE(view_.isReplay()) << testing::PrintToString(name);
    }
    putText(kBoatEntries + 80 + 6, u"[REPLAY]");
    EXPECT_FALSE(view_.isReplay()) << "another boat's name says nothing";
    EXPECT_EQ(tlm_view_is_replay(nullptr), 0);
    EXPECT_EQ(tlm_view_interface(), TLM_VIEW_INTERFACE);
}

TEST_F(LiveView, DescribesChannelsAsTheSectionHasThem) {
    ASSERT_TRUE(view_.channel(ZAN_BARO));
    const view::Channel baro = *view_.channel(ZAN_BARO);
    EXPECT_EQ(baro.number(), ZAN_BARO);
    EXPECT_EQ(baro.name(), "Baro");
    EXPECT_EQ(baro.longName(), "Barometer");
    EXPECT_EQ(baro.unit(), "mbar");
    EXPECT_EQ(baro.timeoutSeconds(), 120U);
    EXPECT_EQ(baro.precision(), 1U);
    EXPECT_EQ(baro.raw().other_boats, 1);
    EXPECT_EQ(view_.channel(ZAN_TWIST)->timeoutSeconds(), std::nullopt);
    EXPECT_EQ(view_.channel(414), std::nullopt);

    SetZanUserVarName(3, "Vane");
    EXPECT_EQ(view_.channel(ZAN_USER_3)->name(), "Vane");
    EXPECT_EQ(view_.findChannel("Vane"), ZAN_USER_3);
    EXPECT_EQ(view_.findChannel("User 3"), std::nullopt);
    tlm_view_channel catalogue;
    ASSERT_EQ(tlm_view_get_catalogue(ZAN_USER_3, &catalogue), 1);
    EXPECT_STREQ(catalogue.short_name, "User 3");
}

TEST_F(LiveView, FindsChannelsByTheirNames) {
    EXPECT_EQ(view_.findChannel("BSP"), ZAN_BSP);
    EXPECT_EQ(view_.findChannel("Barometer"), ZAN_BARO);
    EXPECT_EQ(view_.findChannel("Time"), ZAN_TIME); // which has a long name only
    EXPECT_EQ(view_.findChannel("bsp"), std::nullopt);
    EXPECT_EQ(view_.findChannel(""), std::nullopt);
    for (std::uint16_t channel = 1; channel < ZAN_CHANNEL_COUNT; ++channel) {
        char name[ZAN_NAME_BYTES];
        GetZanVarName(channel, name);
        const auto found = view_.findChannel(name);
        ASSERT_TRUE(found) << name;
        EXPECT_EQ(view_.channel(*found)->name(), name);
    }
}

TEST_F(LiveView, GivesTheEntriesOfBoats) {
    putText(kBoatEntries + 80 * 7 + 6, std::u16string(u"Möwe") + u'\0');
    const std::uint32_t mmsi = 211'234'567;
    std::memcpy(liveSection() + kBoatEntries + 80 * 7 + 72, &mmsi, sizeof mmsi);
    ASSERT_EQ(SetZanVar(ZAN_BSP, 6.4, 7), 1);
    const auto boat = view_.boat(7);
    ASSERT_TRUE(boat);
    EXPECT_EQ(boat->name(), "M\xC3\xB6we");
    EXPECT_EQ(boat->mmsi(), mmsi);
    EXPECT_TRUE(boat->isInUse());
    EXPECT_EQ(boat->raw().has_data, 1);
    EXPECT_EQ(boat->raw().colour, 0x90EE90U);
    EXPECT_EQ(view_.findBoat("M\xC3\xB6we"), 7);
    EXPECT_EQ(view_.findBoat("M"), std::nullopt);
    EXPECT_FALSE(view_.boat(8)->isInUse());
    EXPECT_EQ(view_.boat(8)->mmsi(), std::nullopt);
    EXPECT_EQ(view_.boat(100), std::nullopt);
}

TEST_F(LiveView, GivesSystemValuesAndTheMark) {
    EXPECT_EQ(view_.variable(0), 15.85);
    EXPECT_EQ(view_.variable(12), std::nullopt);
    EXPECT_EQ(view_.variable(80), std::nullopt);
    EXPECT_EQ(view_.integer(6), 5);
    EXPECT_EQ(view_.integer(13), std::nullopt);
    EXPECT_EQ(view_.flag(0), true);
    EXPECT_EQ(view_.flag(2), false);
    EXPECT_EQ(view_.flag(60), std::nullopt);
    EXPECT_EQ(view_.manOverboard(), std::nullopt);

    const std::uint64_t window = 0x7FFFFFF1; // of nobody: the mark is stored all the same
    std::memcpy(liveSection() + 8, &window, sizeof window);
    EXPECT_EQ(tlm_view_host_window(view_.get()), window);
    EXPECT_EQ(SetMOB(54.5, 10.25), 0);
    ASSERT_TRUE(view_.manOverboard());
    EXPECT_EQ(view_.manOverboard()->latitude, 54.5);
    EXPECT_EQ(view_.manOverboard()->longitude, 10.25);
    EXPECT_STREQ(view_.manOverboard()->name, "MOB");
}

TEST_F(LiveView, LongestTextsFitAndUnterminatedOnesEnd) {
    putText(kSettings + 108 * ZAN_USER_0 + 12, std::u16string(48, u'\u6C34')); // both names, no terminator
    const auto channel = view_.channel(ZAN_USER_0);
    std::string water;
    for (int i = 0; i < 31; ++i) water += "\u6C34";
    EXPECT_EQ(channel->longName(), water);
    EXPECT_EQ(channel->name(), water.substr(0, 45));
}

TEST_F(LiveView, NoBytesMakeAnyFunctionFailOrWrite) {
    std::mt19937 random(1);
    std::vector<std::uint16_t> channels;
    for (unsigned channel = 0; channel < 420; ++channel) channels.push_back(static_cast<std::uint16_t>(channel));
    for (int round = 0; round < 5; ++round) {
        for (std::size_t i = 0; i < kBytes; ++i) liveSection()[i] = static_cast<std::byte>(random());
        const std::vector<std::byte> before(liveSection(), liveSection() + kBytes);
        for (std::uint16_t boat = 0; boat < 102; ++boat) {
            (void)view_.read(channels, boat);
            if (const auto entry = view_.boat(boat)) {
                EXPECT_LT(entry->name().size(), sizeof(tlm_view_boat::name));
            }
        }
        for (const std::uint16_t channel : channels)
            if (const auto info = view_.channel(channel)) {
                EXPECT_LT(info->name().size(), sizeof(tlm_view_channel::short_name));
                EXPECT_LT(info->longName().size(), sizeof(tlm_view_channel::long_name));
            }
        for (std::uint16_t index = 0; index < 90; ++index) {
            (void)view_.variable(index);
            (void)view_.integer(index);
            (void)view_.flag(index);
            (void)tlm_view_source(view_.get(), static_cast<std::uint16_t>(index + 100));
        }
        EXPECT_LE(view_.boatCount(), 100);
        (void)view_.findChannel("nothing like it");
        (void)view_.findBoat("nothing like it");
        (void)view_.manOverboard();
        EXPECT_EQ(view_.refreshNow(), State::Attached);
        EXPECT_EQ(std::memcmp(before.data(), liveSection(), kBytes), 0);
    }
}

TEST_F(LiveView, ANullViewIsTheCatalogue) {
    tlm_view_channel info;
    EXPECT_EQ(tlm_view_get_channel(nullptr, ZAN_BSP, &info), 1);
    EXPECT_STREQ(info.short_name, "BSP");
    EXPECT_STREQ(info.unit, "kt");
    EXPECT_EQ(info.timeout_seconds, 10);
    EXPECT_EQ(tlm_view_find_channel(nullptr, "BSP"), ZAN_BSP);
    EXPECT_EQ(tlm_view_find_channel(nullptr, nullptr), TLM_VIEW_NO_CHANNEL);
    EXPECT_EQ(tlm_view_refresh(nullptr), TLM_VIEW_NO_SECTION);
    EXPECT_EQ(tlm_view_refresh_now(nullptr), TLM_VIEW_NO_SECTION);
    EXPECT_EQ(tlm_view_generation(nullptr), 0U);
    tlm_view_value value;
    EXPECT_EQ(tlm_view_read(nullptr, ZAN_BSP, 0, &value), 0);
    EXPECT_EQ(value.value, TLM_VIEW_NO_VALUE);
    const std::uint16_t channel = ZAN_BSP;
    EXPECT_EQ(tlm_view_read_group(nullptr, 0, &channel, 1, &value, nullptr), 0);
    tlm_view_boat boat;
    EXPECT_EQ(tlm_view_get_boat(nullptr, 0, &boat), 0);
    EXPECT_EQ(tlm_view_find_boat(nullptr, "x"), -1);
    double variable = 0;
    EXPECT_EQ(tlm_view_get_variable(nullptr, 0, &variable), 0);
    EXPECT_EQ(variable, TLM_VIEW_NO_VALUE);
    tlm_view_mob mob;
    EXPECT_EQ(tlm_view_get_mob(nullptr, &mob), 0);
    tlm_view_close(nullptr);
}

TEST_F(LiveView, AViewIsMovedWhole) {
    View other = std::move(view_);
    EXPECT_EQ(view_.state(), State::NoSection); // NOLINT(bugprone-use-after-move): what is left is defined
    EXPECT_EQ(other.state(), State::Attached);
    View& self = other;
    other = std::move(self);
    EXPECT_EQ(other.state(), State::Attached);
    view_ = std::move(other);
    EXPECT_EQ(view_.state(), State::Attached);
}

} // namespace
} // namespace tallowmere::test
