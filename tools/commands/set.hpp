// set: write one value, or say why not.
#pragma once

#include "core/channels/context.hpp"
#include "tools/commands/command_context.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::tools {

struct SetOptions {
    std::string channel; // number or name
    std::string value;   // a number in the channel's base unit (days for times), or "none"
    BoatIndex boat = 0;
    bool json = false;
};

/// Writes as a client of the shared library does, with the same refusals, and shows what then stands there.
int runSet(const CommandContext& context, const SetOptions& options);

/// A finite number, or 32767.0 for "none"; empty for anything else.
[[nodiscard]] std::optional<double> parseValue(std::string_view text);

/// Why a write would be refused, for the user; empty when it would not. channel below 414, boat below 100.
[[nodiscard]] std::string refusalOf(const Context& context, ChannelIndex channel, BoatIndex boat);

} // namespace tallowmere::tools
