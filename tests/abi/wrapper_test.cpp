// The C++ header over the eleven functions, as a C++17 client uses it.
#include <tallowmere/tallowmere.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>
#include <utility>

namespace tallowmere::client {
namespace {

static_assert(std::is_trivially_copyable_v<Channel> && sizeof(Channel) == sizeof(std::uint16_t));
static_assert(std::is_trivially_copyable_v<Boat> && sizeof(Boat) == sizeof(std::uint16_t));
static_assert(!std::is_convertible_v<int, Channel> && !std::is_convertible_v<int, Boat>);
static_assert(std::is_convertible_v<ZanChannel, Channel>);
static_assert(!std::is_invocable_v<decltype(read), Boat, Channel>, "the two cannot be mixed up");
static_assert(noexcept(read(ZAN_BSP)) && noexcept(write(ZAN_BSP, 1.0)) && noexcept(variable(0)) && noexcept(flag(0)));
static_assert(Channel(413U).number() == ZAN_PREDSEATEMP && Channel::user(31) == Channel(ZAN_USER_31));

class Wrapper : public testing::Test {
  protected:
    void SetUp() override {
        for (const Channel channel : {Channel(ZAN_BSP), Channel(ZAN_AWA), Channel(ZAN_HDG)}) clear(channel);
    }
};

TEST_F(Wrapper, AValueThatIsNotThereIsEmpty) {
    EXPECT_EQ(read(ZAN_BSP), std::nullopt);
    EXPECT_EQ(read(ZAN_BSP, Boat(99)), std::nullopt);
    EXPECT_TRUE(write(ZAN_BSP, 6.4));
    EXPECT_EQ(read(ZAN_BSP), 6.4);
    EXPECT_TRUE(clear(ZAN_BSP));
    EXPECT_EQ(read(ZAN_BSP), std::nullopt);
}

TEST_F(Wrapper, ANaNIsAValue) {
    EXPECT_TRUE(write(ZAN_BSP, std::nan("")));
    ASSERT_TRUE(read(ZAN_BSP));
    EXPECT_TRUE(std::isnan(*read(ZAN_BSP)));
}

TEST_F(Wrapper, BoatsKeepTheirOwnValues) {
    EXPECT_TRUE(write(ZAN_BSP, 6.4, Boat(3)));
    EXPECT_EQ(read(ZAN_BSP, Boat(3)), 6.4);
    EXPECT_EQ(read(ZAN_BSP), std::nullopt);
    EXPECT_FALSE(write(ZAN_RUDDERFWD, 1.0, Boat(3))); // not kept
}

TEST_F(Wrapper, TheClockIsNotWritten) {
    EXPECT_NE(SetZanVar(ZAN_TIME, 1.0, 0), 0); // the code that looks like true
    EXPECT_FALSE(write(ZAN_TIME, 1.0));
    EXPECT_FALSE(writeRecord(ZAN_TIME, ChannelValue{}));
}

TEST_F(Wrapper, NumbersThatStandForNothingAreRefused) {
    EXPECT_THROW((void)Channel(414U), std::out_of_range);
    EXPECT_THROW((void)Channel(65536U + 1U), std::out_of_range);
    EXPECT_THROW((void)Boat(100), std::out_of_range);
    EXPECT_THROW((void)Boat(65536), std::out_of_range);
    EXPECT_THROW((void)Channel::user(32), std::out_of_range);
    EXPECT_THROW(nameUserChannel(32, "x"), std::out_of_range);
}

TEST_F(Wrapper, NamesFindChannels) {
    EXPECT_EQ(Channel::named("BSP"), Channel(ZAN_BSP));
    EXPECT_EQ(Channel::find("BSP"), Channel(ZAN_BSP));
    EXPECT_EQ(Channel::find("nothing"), std::nullopt);
    EXPECT_EQ(Channel::find(""), std::nullopt); // channel 0 has an empty name
    EXPECT_EQ(Channel::find("a name of more than fifteen letters"), std::nullopt);
    EXPECT_EQ(Channel::find("bsp"), std::nullopt);
}

TEST_F(Wrapper, UnknownNamesAreToldWithTheOneInAnotherCase) {
    const std::pair<const char*, const char*> names[] = {
        {"BPS", "no channel is named \"BPS\""},
        {"bsp", "no channel is named \"bsp\"; did you mean \"BSP\"?"},
        {"", "no channel is named \"\""},
    };
    for (const auto& [name, text] : names) {
        try {
            (void)Channel::named(name);
            ADD_FAILURE() << name << " was found";
        } catch (const UnknownName& error) {
            EXPECT_STREQ(error.what(), text);
        }
    }
}

TEST_F(Wrapper, UserChannelsAreNamedForAll) {
    nameUserChannel(5, "Vane");
    EXPECT_EQ(Channel::user(5).name(), "Vane");
    EXPECT_EQ(Channel::named("Vane"), Channel::user(5));
    nameUserChannel(5, "");
    EXPECT_EQ(Channel::user(5).name(), "User 5");
}

TEST_F(Wrapper, RecordsPassAsTheyAre) {
    ChannelValue record{};
    record.kind = ZAN_KIND_DOUBLE;
    record.payload.number = -31.5;
    EXPECT_TRUE(writeRecord(ZAN_AWA, record));
    const auto stored = readRecord(ZAN_AWA);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->kind, ZAN_KIND_DOUBLE);
    EXPECT_EQ(stored->payload.number, -31.5);
    EXPECT_FALSE(readRecord(ZAN_HDG));
}

TEST_F(Wrapper, SystemValuesAreReadAsTheyAre) {
    double expected = 0;
    ASSERT_EQ(GetSysVar(0, &expected), 1);
    EXPECT_EQ(variable(0), expected);
    EXPECT_EQ(variable(80), std::nullopt);
    EXPECT_EQ(variable(65536), std::nullopt); // and not variable 0
    std::uint8_t set = 0;
    ASSERT_EQ(GetSysBool(0, &set), 1);
    EXPECT_EQ(flag(0), set != 0);
    EXPECT_EQ(flag(60), std::nullopt);
    EXPECT_EQ(flag(65536), std::nullopt);
}

TEST_F(Wrapper, AnAlternatingChannelTellsItsSource) {
    EXPECT_EQ(sourceOf(ZAN_BSP), Channel(ZAN_BSP));
    std::uint16_t source = 0;
    double value = 0;
    (void)GetZanVar(ZAN_ALT_0, &value, 0, &source);
    const auto found = sourceOf(ZAN_ALT_0);
    EXPECT_EQ(found.has_value(), source != ZAN_NO_CHANNEL);
    if (found) {
        EXPECT_EQ(found->number(), source);
    }
}

TEST_F(Wrapper, WithoutAHostNobodyHearsTheAlarm) {
    EXPECT_FALSE(raiseManOverboard(54.5, 10.25));
}

} // namespace
} // namespace tallowmere::client
