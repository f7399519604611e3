// Which channel the user means.
#pragma once

#include "core/channels/channel_lookup.hpp"

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::tools {

/// A channel, or why there is none and what would be near.
struct FoundChannel {
    std::optional<ChannelIndex> channel;
    std::string error;
};

/// Looks channels up by number, short name or, where no short name fits, long name. Names are those of the
/// section when there is one. Case counts only where it decides between several. A text of digits is
/// always a number.
class ChannelFinder {
  public:
    /// area may be null: the catalogue's names.
    explicit ChannelFinder(const SharedArea* area);

    /// typed   as the user typed it, UTF-8
    [[nodiscard]] FoundChannel find(std::string_view typed) const;

  private:
    using Names = std::vector<std::string>; // by channel, as printed

    [[nodiscard]] static std::vector<ChannelIndex> matches(const Names& names, std::string_view text);
    [[nodiscard]] std::vector<ChannelIndex> near(std::string_view text) const;
    [[nodiscard]] std::string described(const std::vector<ChannelIndex>& channels) const;

    Names shortNames_;
    Names longNames_;
};

/// The channels of a command line. Empty when one of them is not found; then `errors` has a line for each
/// such one.
[[nodiscard]] std::optional<std::vector<ChannelIndex>>
findAll(const ChannelFinder& finder, const std::vector<std::string>& texts, std::string& errors);

/// The same with the errors on a stream, each on a line that begins with `speaker` ("tallowmere").
[[nodiscard]] std::optional<std::vector<ChannelIndex>>
findOrTell(const SharedArea* area, const std::vector<std::string>& texts, std::ostream& err, std::string_view speaker);

} // namespace tallowmere::tools
