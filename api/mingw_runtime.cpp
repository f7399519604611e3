// The C++ run-time library lies inside the DLL (-static) and takes 72 KiB for exceptions without memory when it
// is loaded. A program that loads and unloads the library again and again must get them back.

namespace __gnu_cxx {
void __freeres(); // of that run-time library, for those who look for leaks
} // namespace __gnu_cxx

namespace {

struct RuntimeMemory {
    ~RuntimeMemory() { __gnu_cxx::__freeres(); }
};

/// Constructed before everything else of the library, so gone after it.
[[gnu::init_priority(101)]] const RuntimeMemory runtimeMemory;

} // namespace
