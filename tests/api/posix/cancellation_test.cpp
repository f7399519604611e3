// Threads that are being cancelled call the library all the same.
#include "tests/api/exports_fixture.hpp"

#include <pthread.h>

namespace tallowmere::test {
namespace {

struct Calls {
    int posted = 0;
    bool sameValue = false;
    bool wentOn = false;
};

/// With its own cancellation pending from the beginning.
void* callAndEnd(void* given) {
    auto& calls = *static_cast<Calls*>(given);
    ::pthread_cancel(::pthread_self());
    double value = 0;
    std::uint16_t source = 0;
    SetZanVar(ZAN_BSP, 6.5, 1);
    calls.sameValue = GetZanVar(ZAN_BSP, &value, 1, &source) == 1 && value == 6.5;
    calls.posted = SetMOB(51.5, -0.1);
    ::pthread_testcancel();
    calls.wentOn = true;
    return nullptr;
}

class Cancellation : public ExportsTest {};

TEST_F(Cancellation, ThatIsPendingWaitsUntilTheCallsAreOver) {
    ReceivingWindow window;
    ASSERT_NE(window.handle(), 0U);
    raw.put<std::uint64_t>(place::kHostWindow, window.handle());
    Calls calls;
    pthread_t thread{};
    ASSERT_EQ(::pthread_create(&thread, nullptr, callAndEnd, &calls), 0);
    void* result = nullptr;
    ASSERT_EQ(::pthread_join(thread, &result), 0);
    EXPECT_TRUE(calls.sameValue);
    EXPECT_NE(calls.posted, 0);
    EXPECT_EQ(raw.get<double>(place::kMobLatitude), 51.5);
    EXPECT_TRUE(window.poll().has_value());
    EXPECT_EQ(result, PTHREAD_CANCELED);
    EXPECT_FALSE(calls.wentOn);
}

} // namespace
} // namespace tallowmere::test
