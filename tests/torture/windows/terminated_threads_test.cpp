// Threads that are terminated in the midst of a call: the others go on, nobody waits, and what is read is what somebody
// wrote.
#include "tests/torture/direct_calls.hpp"

#include <gtest/gtest.h>
#include <tallowmere/tallowmere.h>

#include <windows.h>

#include <psapi.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <optional>
#include <random>

namespace tallowmere::torture {
namespace {

constexpr unsigned kThreads = 3;
constexpr unsigned kTerminations = 30;
constexpr unsigned kWatcher = 60; // as a writer: the thread that terminates the others
constexpr unsigned kMostSpins = 20'000;
constexpr std::size_t kStack = std::size_t{64} * 1024;
constexpr Place kOwn{ZAN_USER_20, 0}; // written by the watcher alone

/// The library's code in this process.
bool isInLibrary(DWORD64 address) {
    static const MODULEINFO module = [] {
        MODULEINFO found{};
        ::GetModuleInformation(::GetCurrentProcess(), ::GetModuleHandleW(L"tallowmere.dll"), &found, sizeof found);
        return found;
    }();
    const auto first = reinterpret_cast<DWORD64>(module.lpBaseOfDll);
    return address >= first && address < first + module.SizeOfImage;
}

/// A thread that calls without a pause. Its calls allocate nothing: who ends with the process's heap in its hands
/// holds everybody up, whatever library it is in.
class CallingThread {
  public:
    explicit CallingThread(unsigned writer)
        : writer_(writer),
          thread_(::CreateThread(nullptr, kStack, callOn, this, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr)) {
        awaitProgress();
    }
    ~CallingThread() {
        mayEnd_ = true;
        ::WaitForSingleObject(thread_, INFINITE);
        ::CloseHandle(thread_);
    }
    CallingThread(const CallingThread&) = delete;
    CallingThread& operator=(const CallingThread&) = delete;

    /// Waits until it has made another round.
    void awaitProgress() const {
        for (const std::uint32_t before = rounds_; rounds_ < before + 2;) ::SwitchToThread();
    }
    void terminateInside() const {
        CONTEXT context{};
        context.ContextFlags = CONTEXT_CONTROL;
        for (;;) {
            ::SuspendThread(thread_);
            if (::GetThreadContext(thread_, &context) && isInLibrary(context.Rip)) break;
            ::ResumeThread(thread_);
            ::SwitchToThread();
        }
        ::TerminateThread(thread_, 0);
        ::WaitForSingleObject(thread_, INFINITE);
    }
    [[nodiscard]] std::uint32_t wrong() const { return wrong_; }

  private:
    static DWORD WINAPI callOn(void* owner) {
        auto& self = *static_cast<CallingThread*>(owner);
        while (!self.mayEnd_) {
            for (const Place& place : kPlaces) {
                writeAt(place, {self.writer_, self.rounds_});
                if (!readAt(place)) ++self.wrong_;
            }
            if (!systemValuesAreTheDefaults()) ++self.wrong_;
            ++self.rounds_;
        }
        return 0;
    }

    unsigned writer_;
    std::atomic<std::uint32_t> rounds_ = 0;
    std::atomic<std::uint32_t> wrong_ = 0;
    std::atomic<bool> mayEnd_ = false;
    HANDLE thread_;
};

/// What the watcher sees of the section: its own value, and everybody's.
std::uint32_t countWrong(std::uint32_t round) {
    std::uint32_t wrong = systemValuesAreTheDefaults() ? 0 : 1;
    writeAt(kOwn, {kWatcher, round});
    if (readAt(kOwn) != Origin{kWatcher, round}) ++wrong;
    for (const Place& place : kPlaces)
        if (!readAt(place)) ++wrong;
    return wrong;
}

TEST(TerminatedThreads, LeaveTheOthersAtWorkAndOnlyWhatSomebodyWrote) {
    ASSERT_TRUE(
        isInLibrary(reinterpret_cast<DWORD64>(::GetProcAddress(::GetModuleHandleW(L"tallowmere.dll"), "SetZanVar"))));
    for (const Place& place : kPlaces) writeAt(place, {0, 0});
    std::array<std::optional<CallingThread>, kThreads> threads;
    for (unsigned i = 0; i < kThreads; ++i) threads[i].emplace(i + 1);

    std::minstd_rand random(363);
    std::uint32_t wrong = 0;
    for (std::uint32_t round = 1; round <= kTerminations; ++round) {
        const unsigned chosen = round % kThreads;
        for (unsigned spins = random() % kMostSpins; spins > 0; --spins) ::YieldProcessor();
        threads[chosen]->terminateInside();
        wrong += countWrong(round) + threads[chosen]->wrong();
        for (unsigned i = 0; i < kThreads; ++i)
            if (i != chosen) threads[i]->awaitProgress();
        threads[chosen].emplace(chosen + 1);
    }
    for (const auto& thread : threads) wrong += thread->wrong();
    std::printf("%u threads terminated in the library's code\n", kTerminations);
    EXPECT_EQ(wrong, 0U);
}

} // namespace
} // namespace tallowmere::torture
