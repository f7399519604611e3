// The channel numbers by name for the Python and the Node package.
#include "tools/commands/text.hpp"
#include "tools/derive/catalogue_rows.hpp"

namespace tallowmere::derive {
namespace {

constexpr char kPythonHead[] = R"("""Channel numbers by name.

Printed from core/channels/catalogue.def by the target `derive`; do not edit.
"""

from enum import IntEnum


class ChannelId(IntEnum):
    """The number of a channel, by its name in <tallowmere/channels.h> without the prefix."""

)";

constexpr char kNodeHead[] =
    R"(// Channel numbers by name. Printed from core/channels/catalogue.def by the target `derive`; do not edit.
'use strict';

exports.ChannelId = Object.freeze({
)";

constexpr char kTypesHead[] =
    R"(// Channel numbers by name. Printed from core/channels/catalogue.def by the target `derive`; do not edit.

/** The number of a channel, by its name in <tallowmere/channels.h> without the prefix. */
export const ChannelId: {
)";

/// One line for each channel: its constant and number with what stands around them, then its long name.
std::string lines(const char* between, const char* behind, const char* comment) {
    std::string text;
    for (const Row& row : kRows)
        text += "    " + std::string(row.constant) + between + std::to_string(row.index) + behind + comment +
                tools::printable(std::u16string_view(row.longName)) + '\n';
    return text;
}

} // namespace

std::string pythonConstants() {
    return kPythonHead + lines(" = ", "", "  # ");
}

std::string nodeConstants() {
    return kNodeHead + lines(": ", ",", " // ") + "});\n";
}

std::string nodeTypes() {
    std::string text = kTypesHead;
    for (const Row& row : kRows)
        text += "    /** " + tools::printable(std::u16string_view(row.longName)) + " */\n    readonly " +
                std::string(row.constant) + ": " + std::to_string(row.index) + ";\n";
    return text + "};\n";
}

} // namespace tallowmere::derive
