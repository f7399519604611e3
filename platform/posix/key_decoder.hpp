// What a terminal sends for keys.
#pragma once

#include "platform/keyboard.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::platform::posix {

/// Takes bytes as they come, whatever they are, and gives keys. Sequences that are no key of ours are skipped.
class KeyDecoder {
  public:
    void add(std::string_view bytes) { bytes_ += bytes; }
    /// The next whole key.
    /// complete   no more bytes are coming for now: a lone escape is the key of that name
    [[nodiscard]] std::optional<Key> take(bool complete);
    /// Bytes wait for more to come.
    [[nodiscard]] bool isWaiting() const noexcept { return !bytes_.empty(); }

  private:
    std::string bytes_;
};

} // namespace tallowmere::platform::posix
