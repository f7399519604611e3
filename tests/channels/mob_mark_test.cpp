// The man-overboard mark and its notice.
#include "core/channels/mob_mark.hpp"
#include "tests/channels/store_fixture.hpp"

#include <gmock/gmock.h>

namespace tallowmere::test {
namespace {

class ManOverboard : public StoreTest {
  protected:
    void leaveWindow(std::uint64_t handle) { raw.put<std::uint64_t>(place::kHostWindow, handle); }
    int raise(double latitude, double longitude) { return raiseManOverboard(store.context(), latitude, longitude); }
    [[nodiscard]] std::string name() const { return reinterpret_cast<const char*>(raw.bytes() + place::kMobName); }
};

TEST_F(ManOverboard, WithoutAHostWindowNothingIsStoredOrPosted) {
    const auto before = raw.copy();
    EXPECT_EQ(raise(51.5, -0.1), 0);
    EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
    EXPECT_TRUE(machine.posts.empty());
}

TEST_F(ManOverboard, WithoutAHostWindowAnOldMarkIsKept) {
    leaveWindow(0x4711);
    raise(51.5, -0.1);
    leaveWindow(0);
    EXPECT_EQ(raise(1.0, 2.0), 0);
    EXPECT_EQ(raw.get<double>(place::kMobLatitude), 51.5);
    EXPECT_EQ(machine.posts.size(), 1U);
}

TEST_F(ManOverboard, MarkIsStoredAndNothingElse) {
    leaveWindow(0x4711);
    const auto before = raw.copy();
    EXPECT_NE(raise(51.5, -0.1), 0);
    EXPECT_EQ(changesOutside(before, raw.copy(),
                             {{place::kMobName, 32},
                              {place::kMobLatitude, 8},
                              {place::kMobLongitude, 8},
                              {place::kMobFlagA, 1},
                              {place::kMobFlagB, 1}}),
              "");
    EXPECT_EQ(name(), "MOB");
    EXPECT_EQ(raw.get<std::uint8_t>(place::kMobName + 31), 0);
    EXPECT_EQ(raw.get<double>(place::kMobLatitude), 51.5);
    EXPECT_EQ(raw.get<double>(place::kMobLongitude), -0.1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::kMobFlagA), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::kMobFlagB), 1);
}

TEST_F(ManOverboard, LastByteOfTheNameIsForcedToZero) {
    leaveWindow(0x4711);
    std::memset(raw.bytes() + place::kMobName, 'x', 32);
    raise(0, 0);
    EXPECT_EQ(name(), "MOB");
    EXPECT_EQ(raw.get<std::uint8_t>(place::kMobName + 31), 0);
}

TEST_F(ManOverboard, NoticeGoesToTheHandleThatTheHostLeft) {
    leaveWindow(0xFEDCBA9876543210);
    raise(51.5, -0.1);
    ASSERT_EQ(machine.posts.size(), 1U);
    EXPECT_EQ(machine.posts[0].first, 0xFEDCBA9876543210U);
    EXPECT_EQ(machine.posts[0].second.message, 0x8019U);
    EXPECT_EQ(machine.posts[0].second.message, 32793U);
    EXPECT_EQ(machine.posts[0].second.wParam, 8U);
    EXPECT_EQ(machine.posts[0].second.lParam, 0);
}

TEST_F(ManOverboard, ResultIsThePosts) {
    leaveWindow(1);
    machine.postResult = 77;
    EXPECT_EQ(raise(0, 0), 77);
    machine.postResult = 0;
    EXPECT_EQ(raise(12.0, 13.0), 0);
    EXPECT_EQ(raw.get<double>(place::kMobLatitude), 12.0); // stored all the same
}

TEST_F(ManOverboard, TwoCallsOverwriteTheMarkAndPostTwice) {
    const auto window = machine.makeWindow();
    leaveWindow(window->handle());
    raise(1.0, 2.0);
    raise(3.0, 4.0);
    EXPECT_EQ(raw.get<double>(place::kMobLatitude), 3.0);
    EXPECT_EQ(raw.get<double>(place::kMobLongitude), 4.0);
    EXPECT_EQ(window->poll(), kMobMessage);
    EXPECT_EQ(window->poll(), kMobMessage);
    EXPECT_EQ(window->poll(), std::nullopt);
}

TEST_F(ManOverboard, PositionIsStoredAsGiven) {
    leaveWindow(1);
    raise(kNaN, 1e300);
    EXPECT_EQ(raw.get<std::uint64_t>(place::kMobLatitude), bitsOf(kNaN));
    EXPECT_EQ(raw.get<double>(place::kMobLongitude), 1e300);
}

TEST(ManOverboardWithoutASection, GivesZeroAndPostsNothing) {
    MemoryMachine machine;
    MemoryPlatform platform(machine);
    EXPECT_EQ(raiseManOverboard(Context{platform, nullptr}, 1.0, 2.0), 0);
    EXPECT_TRUE(machine.posts.empty());
}

} // namespace
} // namespace tallowmere::test
