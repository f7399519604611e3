// A program whose threads go on reading and writing while main returns. Ends with 0 when they still could after the
// library had ended in this process.
#include "tests/process/posix/at_the_end.hpp"

#include <tallowmere/tallowmere.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::size_t kThreads = 8; // more than there are processors, so that some wait inside a call

std::array<std::atomic<unsigned>, kThreads> calls;

void callForever(std::size_t number) {
    const auto boat = static_cast<std::uint16_t>(number % 4);
    for (;;) {
        double value = 0;
        std::uint16_t source = 0;
        std::uint8_t flag = 0;
        char name[ZAN_NAME_BYTES];
        SetZanVar(ZAN_BSP, 6.4, boat);
        GetZanVar(ZAN_BSP, &value, boat, &source);
        GetZanVar(ZAN_ALT_0, &value, 0, &source);
        GetSysVar(0, &value);
        GetSysBool(0, &flag);
        GetZanVarName(ZAN_BSP, name);
        calls[number].fetch_add(1, std::memory_order_relaxed);
    }
}

/// Until every thread has been round twice, so once from the beginning to the end.
void awaitCalls() {
    std::array<unsigned, kThreads> before{};
    std::copy(calls.begin(), calls.end(), before.begin());
    for (std::size_t number = 0; number < kThreads; ++number)
        while (calls[number] - before[number] < 2) std::this_thread::yield();
}

/// Runs after the library's own end: until then every thread has to live.
void stayUntilAllHaveCalledAgain() {
    double value = 0;
    if (GetSysVar(0, &value) != 0) ::_exit(3); // the library has not ended: this would show nothing
    awaitCalls();
}

} // namespace

int main() {
    double value = 0;
    if (GetSysVar(0, &value) == 0) ::_exit(2); // without a section this would show nothing
    tallowmere::test::callAtTheEnd(stayUntilAllHaveCalledAgain);
    for (std::size_t number = 0; number < kThreads; ++number) std::thread(callForever, number).detach();
    awaitCalls();
    return 0;
}
