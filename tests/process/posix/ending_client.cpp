// A program whose threads go on calling all functions while main returns. Ends with 0 when they still could after the
// library had ended in this process.
#include "tests/channels/raw_section.hpp"
#include "tests/process/posix/at_the_end.hpp"

#include <tallowmere/tallowmere.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <string>
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
        ChannelValue record;
        SetZanVar(ZAN_BSP, 6.4, boat);
        SetZanVar(ZAN_USER_0, 30.0, boat);
        GetZanVar(ZAN_BSP, &value, boat, &source);
        GetZanVar(ZAN_ALT_0, &value, 0, &source);
        GetZanVar2(ZAN_USER_0, &record, boat, &source);
        SetZanVar2(ZAN_USER_0, &record, boat);
        GetSysVar(0, &value);
        GetSysBool(0, &flag);
        GetZanVarName(ZAN_BSP, name);
        SetZanUserVarName(0, "Mine");
        SetMOB(39.47, -0.33);
        GetBoatNum();
        GetZanVarNum();
        calls[number].fetch_add(1, std::memory_order_relaxed);
    }
}

/// Has a user channel calibrated, as a host would (the unit class of one is looked up in the section while it is
/// corrected), and names a host window that nobody has: SetMOB posts, and to nobody.
bool prepareSection() {
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    if (folder == nullptr) return false;
    const int file = ::open((std::string(folder) + "/ZanCore_363_253336").c_str(), O_WRONLY | O_CLOEXEC);
    const std::uint8_t one = 1;
    const bool done = ::pwrite(file, &one, 1, tallowmere::test::place::calibrate(ZAN_USER_0)) == 1 &&
                      ::pwrite(file, &one, 1, tallowmere::test::place::kHostWindow) == 1;
    ::close(file);
    return done;
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
    if (GetSysVar(0, &value) == 0 || !prepareSection()) ::_exit(2); // without a section this would show nothing
    tallowmere::test::callAtTheEnd(stayUntilAllHaveCalledAgain);
    for (std::size_t number = 0; number < kThreads; ++number) std::thread(callForever, number).detach();
    awaitCalls();
    return 0;
}
