// SetMOB, up to a window of this program.
#include "tests/api/exports_fixture.hpp"

#include <chrono>
#include <thread>

namespace tallowmere::test {
namespace {

class Mob : public ExportsTest {
  protected:
    /// Posting does not wait for arrival, so the message is waited for.
    static std::optional<ReceivingWindow::Message> receive(ReceivingWindow& window) {
        for (int attempt = 0; attempt < 200; ++attempt) {
            if (const auto message = window.poll()) return message;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return std::nullopt;
    }
};

TEST_F(Mob, WithoutAHostWindowReturnsZeroAndStoresNothing) {
    const auto before = raw.copy();
    EXPECT_EQ(SetMOB(51.5, -0.1), 0);
    EXPECT_EQ(changesOutside(before, raw.copy(), {}), "");
}

TEST_F(Mob, MarksThePositionAndTellsTheHost) {
    ReceivingWindow window;
    ASSERT_NE(window.handle(), 0U);
    raw.put<std::uint64_t>(place::kHostWindow, window.handle());
    EXPECT_NE(SetMOB(51.5, -0.1), 0);
    EXPECT_STREQ(reinterpret_cast<const char*>(raw.bytes() + place::kMobName), "MOB");
    EXPECT_EQ(raw.get<double>(place::kMobLatitude), 51.5);
    EXPECT_EQ(raw.get<double>(place::kMobLongitude), -0.1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::kMobFlagA), 1);
    EXPECT_EQ(raw.get<std::uint8_t>(place::kMobFlagB), 1);
    const auto message = receive(window);
    ASSERT_TRUE(message.has_value());
    EXPECT_EQ(message->message, 32793U);
    EXPECT_EQ(message->wParam, 8U);
    EXPECT_EQ(message->lParam, 0);
}

TEST_F(Mob, TwoCallsPostTwoMessages) {
    ReceivingWindow window;
    ASSERT_NE(window.handle(), 0U);
    raw.put<std::uint64_t>(place::kHostWindow, window.handle());
    EXPECT_NE(SetMOB(1.0, 2.0), 0);
    EXPECT_NE(SetMOB(3.0, 4.0), 0);
    EXPECT_EQ(raw.get<double>(place::kMobLatitude), 3.0);
    EXPECT_EQ(raw.get<double>(place::kMobLongitude), 4.0);
    EXPECT_TRUE(receive(window).has_value());
    EXPECT_TRUE(receive(window).has_value());
    EXPECT_FALSE(window.poll().has_value());
}

TEST_F(Mob, WindowThatIsGoneGetsAMarkButNoMessage) {
    {
        ReceivingWindow window;
        raw.put<std::uint64_t>(place::kHostWindow, window.handle());
    }
    EXPECT_EQ(SetMOB(5.0, 6.0), 0);
    EXPECT_EQ(raw.get<double>(place::kMobLatitude), 5.0);
}

TEST_F(Mob, HandleThatNamesNothingDoesNoHarm) {
    for (std::uint64_t handle : {std::uint64_t{1}, std::uint64_t{0x7FFFFFFFFFFFFFF0}}) {
        raw.put<std::uint64_t>(place::kHostWindow, handle);
        (void)SetMOB(7.0, 8.0);
        EXPECT_EQ(raw.get<double>(place::kMobLatitude), 7.0);
    }
}

} // namespace
} // namespace tallowmere::test
