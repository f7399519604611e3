#include "tests/contract/platform_fixture.hpp"

#include <limits>

namespace tallowmere::test {
namespace {

using platform::HostMessage;

class NoticesContract : public ContractTest {
  protected:
    /// The next message, for which some systems take a moment.
    static std::optional<HostMessage> await(platform::HostWindow& window) {
        for (int i = 0; i < 200; ++i) {
            if (std::optional<HostMessage> message = window.poll()) return message;
            platform::hostPlatform().sleepMilliseconds(5);
        }
        return std::nullopt;
    }
};

TEST_P(NoticesContract, AMessageReachesTheWindowWhole) {
    const auto window = fixture->makeWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_NE(window->handle(), 0U);
    const HostMessage message{0x8019, 8, -1};
    EXPECT_NE(platform.postToHost(window->handle(), message), 0);
    EXPECT_EQ(await(*window), message);
    EXPECT_EQ(window->poll(), std::nullopt);
}

TEST_P(NoticesContract, MessagesArriveInOrder) {
    const auto window = fixture->makeWindow();
    ASSERT_NE(window, nullptr);
    for (std::uint64_t i = 0; i < 5; ++i) EXPECT_NE(platform.postToHost(window->handle(), {0x8019, i, 0}), 0);
    for (std::uint64_t i = 0; i < 5; ++i) EXPECT_EQ(await(*window), (HostMessage{0x8019, i, 0}));
}

TEST_P(NoticesContract, EachWindowGetsItsOwnMessages) {
    const auto one = fixture->makeWindow();
    const auto other = fixture->makeWindow();
    ASSERT_NE(one, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_NE(one->handle(), other->handle());
    EXPECT_NE(platform.postToHost(other->handle(), {0x8019, 2, 0}), 0);
    EXPECT_EQ(await(*other), (HostMessage{0x8019, 2, 0}));
    EXPECT_EQ(one->poll(), std::nullopt);
}

TEST_P(NoticesContract, PostingToNoWindowFails) {
    EXPECT_EQ(platform.postToHost(0x123456789, {0x8019, 8, 0}), 0);
    EXPECT_EQ(platform.postToHost(std::numeric_limits<std::uint64_t>::max() - 1000, {0x8019, 8, 0}), 0);
}

TEST_P(NoticesContract, PostingToAWindowThatIsGoneFails) {
    auto window = fixture->makeWindow();
    ASSERT_NE(window, nullptr);
    const std::uint64_t handle = window->handle();
    window.reset();
    EXPECT_EQ(platform.postToHost(handle, {0x8019, 8, 0}), 0);
}

TALLOWMERE_CONTRACT(NoticesContract);

} // namespace
} // namespace tallowmere::test
