#include "tests/floating_point/unmasked.hpp"

#include <windows.h>

#include <cfloat>

namespace tallowmere::test {
namespace {

bool raised = false;
constexpr DWORD kAllMasked = 0x1F80; // of MXCSR, with no flag set

LONG CALLBACK maskAgain(EXCEPTION_POINTERS* exception) {
    switch (exception->ExceptionRecord->ExceptionCode) {
    case EXCEPTION_FLT_INVALID_OPERATION:
    case EXCEPTION_FLT_DIVIDE_BY_ZERO:
    case EXCEPTION_FLT_OVERFLOW:
    case STATUS_FLOAT_MULTIPLE_TRAPS:
    case STATUS_FLOAT_MULTIPLE_FAULTS:
        raised = true;
        exception->ContextRecord->MxCsr = kAllMasked;
        exception->ContextRecord->FltSave.MxCsr = kAllMasked;
        return EXCEPTION_CONTINUE_EXECUTION;
    default:
        return EXCEPTION_CONTINUE_SEARCH;
    }
}

} // namespace

bool raisesNothing(const std::function<void()>& work) {
    void* const handler = ::AddVectoredExceptionHandler(1, maskAgain);
    raised = false;
    ::_clearfp();
    const unsigned before = ::_controlfp(0, 0);
    ::_controlfp(before & ~static_cast<unsigned>(_EM_INVALID | _EM_ZERODIVIDE | _EM_OVERFLOW), _MCW_EM);
    work();
    ::_clearfp();
    ::_controlfp(before, _MCW_EM);
    ::RemoveVectoredExceptionHandler(handler);
    return !raised;
}

} // namespace tallowmere::test
