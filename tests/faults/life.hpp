// The life of a host and a client beside it on a machine in memory, and what of it can be seen: for tests in
// which one thing on the way fails.
#pragma once

#include "tests/core/core_fixture.hpp"

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tallowmere::test {

/// Everything that a life leaves to be seen, in named entries; a name begins with its group and a slash.
struct Outcome {
    std::vector<std::uint8_t> section;         // its bytes; empty without one
    std::map<std::string, std::string> others; // calibration items and settings
};

/// A host with calibration, a plain client that opens the host's section, and the host's track settings.
class Life {
  public:
    /// withUser   the machine has everything that a user can set, each different from the default
    explicit Life(bool withUser);

    void attach(); // both, the host first
    void detach(); // both, the client first

    /// The host's section, calibration and settings, between attach and detach. Only what needs no section when
    /// the host has none.
    [[nodiscard]] Outcome seen() const;
    /// The settings that a detached host leaves.
    [[nodiscard]] Outcome saved() const;

    MemoryMachine machine;
    MemoryPlatform platform{machine};
    std::unique_ptr<CCore> host;
    std::unique_ptr<CCore> client;
};

/// Each entry that is as in none of the others; an empty text is taken for paths and a calibration item's texts,
/// which are empty where there was no memory for them.
[[nodiscard]] std::string entriesOfNone(const Outcome& seen, std::initializer_list<const Outcome*> others);

/// How many entries of each group are unlike `other`'s; without the groups of which all are alike.
[[nodiscard]] std::map<std::string, int> unlike(const Outcome& seen, const Outcome& other);

/// The data folder as the section has it.
[[nodiscard]] std::u16string dataFolderOf(const Outcome& seen);

} // namespace tallowmere::test
