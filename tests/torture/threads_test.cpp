// All eleven functions from many threads of one process at once: every value that comes back was written by
// somebody, and the thread sanitizer (preset linux-tsan) finds no access of which the language says nothing.
#include "tests/api/live_section.hpp"
#include "tests/torture/direct_calls.hpp"

#include <gtest/gtest.h>
#include <tallowmere/tallowmere.h>

#include <array>
#include <atomic>
#include <cstring>
#include <string_view>
#include <thread>
#include <vector>

namespace tallowmere::torture {
namespace {

constexpr unsigned kThreads = 8;
constexpr std::size_t kHostWindowOffset = 8;
constexpr std::uint32_t kRounds = 2000;
constexpr std::uint16_t kRenamed = 175; // user channel 3

/// Characters of several names may mix, but nobody's name has any other, and it always ends.
bool namesAreOfSomebody() {
    SetZanUserVarName(kRenamed - kFirstUserChannel, "aaaaaaaa");
    SetZanUserVarName(kRenamed, "bbbb");
    std::array<char, ZAN_NAME_BYTES> name{};
    GetZanVarName(kRenamed, name.data());
    const std::string_view text(name.data());
    return text.size() < name.size() && text.find_first_not_of("ab") == text.npos;
}

TEST(Threads, CallAllFunctionsAtOnceAndReadOnlyWhatWasWritten) {
    const test::ReceivingWindow host;
    const std::uint64_t handle = host.handle();
    std::memcpy(test::liveSection() + kHostWindowOffset, &handle, sizeof handle);
    for (const Place& place : kPlaces) writeAt(place, {0, 0});
    SetZanUserVarName(kRenamed, "a");
    std::atomic<unsigned> wrong{0};
    const auto work = [&](unsigned thread) {
        for (std::uint32_t round = 0; round < kRounds; ++round) {
            for (const Place& place : kPlaces) {
                writeAt(place, {thread, round});
                if (!readAt(place)) ++wrong;
            }
            if (!namesAreOfSomebody() || !systemValuesAreTheDefaults()) ++wrong;
            double value = 0;
            std::uint16_t source = 0;
            GetZanVar(ZAN_TIME, &value, 0, &source);
            GetZanVar(117, &value, 0, &source); // an alternating channel
            SetMOB(50.0, -1.0);                 // the host does not keep up; that is no matter here
        }
    };
    {
        std::vector<std::jthread> threads;
        for (unsigned thread = 0; thread < kThreads; ++thread) threads.emplace_back(work, thread + 1);
    }
    EXPECT_EQ(wrong, 0U);
}

} // namespace
} // namespace tallowmere::torture
