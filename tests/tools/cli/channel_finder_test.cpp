#include "tools/commands/channel_finder.hpp"

#include "core/channels/area_defaults.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace tallowmere::tools {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ChannelFinderTest : public ::testing::Test {
  protected:
    ChannelFinderTest() { initialiseArea(*area); }
    void rename(ChannelIndex channel, std::u16string_view name) {
        writeText(area->settings[channel].shortName, name);
        writeText(area->settings[channel].longName, name);
    }
    [[nodiscard]] FoundChannel find(std::string_view text) const { return ChannelFinder(area.get()).find(text); }

    std::unique_ptr<SharedArea> area = std::make_unique<SharedArea>();
};

TEST_F(ChannelFinderTest, EveryShortNameAndNumberFindsItsChannel) {
    const ChannelFinder finder(nullptr);
    for (ChannelIndex channel = 0; channel < kChannelCount; ++channel) {
        EXPECT_EQ(finder.find(std::to_string(channel)).channel, channel);
        std::string name;
        for (const char16_t c : std::u16string_view(kCatalogue[channel].shortName))
            name.push_back(static_cast<char>(c));
        if (name.empty()) continue; // the clock has a long name only
        EXPECT_EQ(finder.find(name).channel, channel) << name;
    }
}

TEST_F(ChannelFinderTest, CaseDoesNotMatter) {
    EXPECT_EQ(find("bsp").channel, ZAN_BSP);
    EXPECT_EQ(find("mk LAT").channel, ZAN_MK_LAT);
}

TEST_F(ChannelFinderTest, LongNameFindsWhereNoShortNameDoes) {
    EXPECT_EQ(find("heading").channel, ZAN_HDG);
    EXPECT_EQ(find("Time").channel, ZAN_TIME);
    EXPECT_EQ(find("Depth").channel, ZAN_DEPTH);
}

TEST_F(ChannelFinderTest, NamesInTheSectionComeFirst) {
    rename(ZAN_USER_3, u"Keel pump");
    EXPECT_EQ(find("keel PUMP").channel, ZAN_USER_3);
    EXPECT_EQ(find("User 3").channel, std::nullopt);
}

TEST_F(ChannelFinderTest, ExactCaseDecidesBetweenSeveral) {
    rename(ZAN_USER_0, u"Pump");
    rename(ZAN_USER_1, u"PUMP");
    EXPECT_EQ(find("Pump").channel, ZAN_USER_0);
    EXPECT_EQ(find("PUMP").channel, ZAN_USER_1);
}

TEST_F(ChannelFinderTest, AmbiguousNameTellsTheNumbers) {
    rename(ZAN_USER_0, u"Pump");
    rename(ZAN_USER_1, u"PUMP");
    const FoundChannel found = find("pump");
    EXPECT_EQ(found.channel, std::nullopt);
    EXPECT_THAT(found.error, HasSubstr("several"));
    EXPECT_THAT(found.error, HasSubstr("Pump (172), PUMP (173)"));
}

TEST_F(ChannelFinderTest, UnknownNameSuggestsNearOnes) {
    EXPECT_THAT(find("BPS").error, HasSubstr("BSP (1)"));
    EXPECT_THAT(find("Dept").error, HasSubstr("Depth (17)"));
    EXPECT_THAT(find("speed").error, HasSubstr("RchBsToLn (87)")); // by its long name
}

TEST_F(ChannelFinderTest, NameLikeNoOtherPointsToTheList) {
    const FoundChannel found = find("qqqqqqqq");
    EXPECT_THAT(found.error, HasSubstr("no channel \"qqqqqqqq\""));
    EXPECT_THAT(found.error, HasSubstr("tallowmere list"));
}

TEST_F(ChannelFinderTest, NumberBeyondTheLastIsToldSo) {
    EXPECT_THAT(find("414").error, HasSubstr("0 to 413"));
    EXPECT_THAT(find("99999999999999999999999").error, HasSubstr("0 to 413"));
    EXPECT_EQ(find("413").channel, 413);
}

TEST_F(ChannelFinderTest, EmptyTextFindsNothing) {
    EXPECT_EQ(find("").channel, std::nullopt); // although channel 0 has an empty short name
}

TEST_F(ChannelFinderTest, EndlessTextIsNotCompared) {
    EXPECT_EQ(find(std::string(1'000'000, 'x')).channel, std::nullopt);
}

TEST_F(ChannelFinderTest, ControlCharactersNeverReachTheMessage) {
    rename(ZAN_USER_0, u"BSQ\x1b[2J");
    const FoundChannel found = find("BSQ\x1b");
    EXPECT_THAT(found.error, Not(HasSubstr("\x1b")));
    EXPECT_THAT(found.error, HasSubstr("BSQ?[2J (172)"));
}

TEST_F(ChannelFinderTest, FindAllReportsEachUnknownName) {
    std::string errors;
    EXPECT_EQ(findAll(ChannelFinder(nullptr), {"BSP", "nix", "500"}, errors), std::nullopt);
    EXPECT_THAT(errors, HasSubstr("nix"));
    EXPECT_THAT(errors, HasSubstr("500"));
}

} // namespace
} // namespace tallowmere::tools
