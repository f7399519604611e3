// The C++ run-time library lies inside the DLL (-static) and takes 72 KiB for exceptions without memory when it
// is loaded. A program that loads and unloads the library again and again must get them back.
//
// Only when it is unloaded: the run-time library goes on looking at them, and at the end of a program others may
// call the library after its own end and meet an exception without memory. Behind an unloading there are no calls.

namespace __gnu_cxx {
void __freeres(); // of that run-time library, for those who look for leaks
} // namespace __gnu_cxx

namespace {

constinit bool programEnds = false;

struct RuntimeMemory {
    ~RuntimeMemory() {
        if (!programEnds) __gnu_cxx::__freeres();
    }
};

/// Constructed before everything else of the library, so gone after it.
[[gnu::init_priority(101)]] const RuntimeMemory runtimeMemory;

constexpr unsigned long kDetach = 0; // DLL_PROCESS_DETACH

} // namespace

/// The system's word, before anything is destroyed, on why the library ends: `reserved` is null when it is unloaded.
extern "C" int DllMain(void* module, unsigned long reason, void* reserved);
extern "C" int DllMain(void*, unsigned long reason, void* reserved) {
    programEnds = reason == kDetach && reserved != nullptr;
    return 1;
}
