// What a test's process holds of the system: the same before a failure and after it.
#pragma once

#include "tests/contract/posix_children.hpp"
#include "tests/faults/posix/failing_calls.hpp"

#include <cstddef>
#include <filesystem>
#include <ostream>

namespace tallowmere::test {

struct Holdings {
    int openFiles = 0;
    int mappedFiles = 0;         // mappings of files below the test's folder, the section's
    std::ptrdiff_t mappings = 0; // made by the library, of memory too (mappingsHeld)

    friend bool operator==(const Holdings&, const Holdings&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Holdings& held) {
        return out << held.openFiles << " open files, " << held.mappedFiles << " mapped files, " << held.mappings
                   << " mappings";
    }
};

/// folder   with everything that the test maps
[[nodiscard]] inline Holdings holdings(const std::filesystem::path& folder) {
    return {openFileCount(), mappingsBelow(folder), mappingsHeld()};
}

} // namespace tallowmere::test
