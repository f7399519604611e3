#include "tests/floating_point/unmasked.hpp"

#include <cfenv>
#include <csignal>
#include <ucontext.h>

namespace tallowmere::test {
namespace {

volatile std::sig_atomic_t raised = 0;
constexpr std::uint32_t kAllMasked = 0x1F80; // of MXCSR, with no flag set

void maskAgain(int, siginfo_t*, void* context) {
    raised = 1;
    static_cast<ucontext_t*>(context)->uc_mcontext.fpregs->mxcsr = kAllMasked;
}

} // namespace

bool raisesNothing(const std::function<void()>& work) {
    struct sigaction handler {};
    struct sigaction before {};
    handler.sa_sigaction = maskAgain;
    handler.sa_flags = SA_SIGINFO;
    ::sigaction(SIGFPE, &handler, &before);
    raised = 0;
    std::feclearexcept(FE_ALL_EXCEPT);
    ::feenableexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW);
    work();
    ::fedisableexcept(FE_ALL_EXCEPT);
    std::feclearexcept(FE_ALL_EXCEPT);
    ::sigaction(SIGFPE, &before, nullptr);
    return raised == 0;
}

} // namespace tallowmere::test
