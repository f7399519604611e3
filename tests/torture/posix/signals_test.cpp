// A signal's handler calls every function that docs/threading.md allows it, again and again, while the flow that it
// interrupts is inside the same functions or any other. There is one thread, so each read has an exact answer: what
// this flow wrote last, or what a handler wrote since.
#include "tests/api/live_section.hpp"
#include "tests/torture/direct_calls.hpp"

#include <gtest/gtest.h>
#include <tallowmere/tallowmere.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <link.h>
#include <optional>
#include <sys/time.h>
#include <ucontext.h>

namespace tallowmere::torture {
namespace {

constexpr unsigned kFlow = 1; // writers
constexpr unsigned kHandler = 2;
constexpr unsigned kInterruptions = 2000; // of the library's own code
constexpr suseconds_t kMicrosecondsBetween = 20;
constexpr std::size_t kHostWindowOffset = 8;
constexpr int kForeignError = 4711;

// What the handler counts.
constinit std::atomic<std::uint32_t> signals = 0;
constinit std::atomic<std::uint32_t> interruptions = 0;
constinit std::atomic<std::uint32_t> wrong = 0;
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

/// The library's code in this process.
struct Code {
    std::uintptr_t first = 0;
    std::uintptr_t end = 0;
    [[nodiscard]] bool contains(std::uintptr_t address) const noexcept { return address >= first && address < end; }
};
constinit Code code;

int findCode(dl_phdr_info* module, std::size_t, void* function) {
    for (int i = 0; i < module->dlpi_phnum; ++i) {
        const ElfW(Phdr)& part = module->dlpi_phdr[i];
        const Code found{module->dlpi_addr + part.p_vaddr, module->dlpi_addr + part.p_vaddr + part.p_memsz};
        if (part.p_type != PT_LOAD || !found.contains(reinterpret_cast<std::uintptr_t>(function))) continue;
        code = found;
        return 1;
    }
    return 0;
}

void signalAfter(suseconds_t microseconds) {
    const itimerval timer{{0, 0}, {0, microseconds}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

/// Nobody comes between: what it writes is what it reads. What it interrupts may be about to look at errno.
void handle(int, siginfo_t*, void* context) {
    const int before = errno;
    errno = kForeignError;
    const auto address = static_cast<const ucontext_t*>(context)->uc_mcontext.gregs[REG_RIP];
    if (code.contains(static_cast<std::uintptr_t>(address))) ++interruptions;
    const Origin mine{kHandler, ++signals};
    const Place& place = kPlaces[mine.sequence % kPlaces.size()];
    if (!writeAt(place, mine) || readAt(place) != mine || !systemValuesAreTheDefaults()) ++wrong;
    if (errno != kForeignError) ++wrong;
    signalAfter(kMicrosecondsBetween); // each time anew, so that the flow gets on however long this takes
    errno = before;
}

/// The handler at work.
class Signals {
  public:
    Signals() {
        struct sigaction action {};
        action.sa_sigaction = handle;
        action.sa_flags = SA_SIGINFO | SA_RESTART;
        ::sigaction(SIGALRM, &action, &before_);
        signalAfter(kMicrosecondsBetween);
    }
    ~Signals() {
        ::signal(SIGALRM, SIG_IGN);
        signalAfter(0); // 0: never
        ::sigaction(SIGALRM, &before_, nullptr);
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

  private:
    struct sigaction before_ {};
};

bool isMineOrAHandlers(const std::optional<Origin>& seen, const Origin& mine) {
    return seen && (seen == mine || seen->writer == kHandler);
}

/// What a handler may not call, and may interrupt.
bool namesAndTheMarkWork(test::ReceivingWindow& host) {
    std::array<char, ZAN_NAME_BYTES> name{};
    SetZanUserVarName(3, "Vane");
    GetZanVarName(175, name.data());
    const bool posted = SetMOB(50.0, -1.0) != 0;
    return std::strcmp(name.data(), "Vane") == 0 && posted && host.poll().has_value();
}

TEST(Signals, HandlersReadAndWriteWhileCallsAreInterrupted) {
    test::ReceivingWindow host;
    const std::uint64_t window = host.handle();
    std::memcpy(test::liveSection() + kHostWindowOffset, &window, sizeof window);
    ASSERT_EQ(::dl_iterate_phdr(findCode, reinterpret_cast<void*>(&GetZanVar)), 1);
    for (const Place& place : kPlaces) ASSERT_TRUE(writeAt(place, {kFlow, 0}));

    std::uint32_t wrongHere = 0;
    std::uint32_t sequence = 0;
    {
        const Signals atWork;
        while (interruptions < kInterruptions) {
            const Origin mine{kFlow, ++sequence};
            for (const Place& place : kPlaces)
                if (!writeAt(place, mine) || !isMineOrAHandlers(readAt(place), mine)) ++wrongHere;
            if (!systemValuesAreTheDefaults()) ++wrongHere;
            if (sequence % 64 == 0 && !namesAndTheMarkWork(host)) ++wrongHere;
        }
    }
    std::printf("%u signals, %u of them in the library's code, during %u rounds\n", signals.load(),
                interruptions.load(), sequence);
    EXPECT_EQ(wrongHere, 0U);
    EXPECT_EQ(wrong, 0U);
}

} // namespace
} // namespace tallowmere::torture
