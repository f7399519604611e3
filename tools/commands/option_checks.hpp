// Checks of numeric options. The argument library's own let "nan" through and print the limits of the type.
#pragma once

#include <CLI/CLI.hpp>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace tallowmere::tools {

/// The whole of the text as a number, else empty.
template <class Number> std::optional<Number> wholeText(const std::string& text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

inline CLI::Validator wholeNumberCheck(std::int64_t lowest, std::int64_t highest) {
    const auto check = [lowest, highest](const std::string& text) -> std::string {
        const auto number = wholeText<std::int64_t>(text);
        if (number && *number >= lowest && *number <= highest) return {};
        return "must be a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
    };
    return CLI::Validator(check, "");
}

inline CLI::Validator numberCheck(double lowest, double highest) {
    const auto check = [lowest, highest](const std::string& text) -> std::string {
        const auto number = wholeText<double>(text);
        if (number && *number >= lowest && *number <= highest) return {}; // not a number is in no range
        char message[96];
        std::snprintf(message, sizeof message, "must be a number from %g to %g", lowest, highest);
        return message;
    };
    return CLI::Validator(check, "");
}

/// How much faster than real time: 0 means at once. Slower than 0.001 waits for hours between lines.
inline CLI::Validator speedCheck() {
    const auto check = [](const std::string& text) -> std::string {
        const auto speed = wholeText<double>(text);
        if (speed && (*speed == 0.0 || (*speed >= 0.001 && *speed <= 1e6))) return {};
        return "must be 0 (at once) or a number from 0.001 to 1000000";
    };
    return CLI::Validator(check, "");
}

} // namespace tallowmere::tools
