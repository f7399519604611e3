// The entry that libFuzzer calls, for the target that the build names.
#include "fuzz/support/target.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tallowmere::fuzz::TALLOWMERE_FUZZ_TARGET({data, size});
    return 0;
}
