#include "tools/commands/channel_finder.hpp"

#include "tools/commands/text.hpp"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <utility>

namespace tallowmere::tools {
namespace {

constexpr std::size_t kMostSuggestions = 6;
constexpr std::size_t kLongestCompared = 32; // longer texts are no channel name; bounds the work

bool isNumber(std::string_view text) noexcept {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// How many letters must be put in, left out, replaced or swapped with their neighbour to make one text of
/// the other.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            d[i][j] = std::min({replaced, d[i - 1][j] + 1, d[i][j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    }
    return d[a.size()][b.size()];
}

/// 0: the same; the larger the less alike; empty: not worth suggesting.
std::optional<std::size_t> unlikeness(std::string_view wanted, std::string_view name) {
    if (name.empty()) return std::nullopt;
    if (name.starts_with(wanted)) return 1;
    const std::size_t distance = editDistance(wanted, name);
    if (distance <= 1 || (distance == 2 && wanted.size() > 3)) return distance + 1;
    if (wanted.size() > 1 && name.find(wanted) != std::string_view::npos) return 4;
    return std::nullopt;
}

} // namespace

ChannelFinder::ChannelFinder(const SharedArea* area) {
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        shortNames_.push_back(printable(shortNameOf(area, channel)));
        longNames_.push_back(printable(longNameOf(area, channel)));
    }
}

FoundChannel ChannelFinder::find(std::string_view typed) const {
    const std::string text = printable(typed); // names are compared as they are shown
    if (isNumber(text)) {
        std::size_t number = kChannelCount;
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
        if (parsed.ec == std::errc{} && number < kChannelCount) return {static_cast<ChannelIndex>(number), {}};
        return {std::nullopt, "there is no channel " + text + "; channels are 0 to 413"};
    }
    std::vector<ChannelIndex> found = matches(shortNames_, text);
    if (found.empty()) found = matches(longNames_, text);
    if (found.size() == 1) return {found.front(), {}};

    std::string error;
    if (found.empty()) {
        const std::vector<ChannelIndex> suggestions = near(text);
        error = "there is no channel \"" + text + "\"";
        error += suggestions.empty() ? "; \"tallowmere list\" shows all" : "; near it: " + described(suggestions);
    } else {
        error = "\"" + text + "\" is the name of several channels, give the number: " + described(found);
    }
    return {std::nullopt, std::move(error)};
}

std::vector<ChannelIndex> ChannelFinder::matches(const Names& names, std::string_view text) {
    std::vector<ChannelIndex> exact;
    std::vector<ChannelIndex> anyCase;
    const std::string wanted = lowerCased(text);
    for (std::size_t channel = 0; channel < names.size() && !text.empty(); ++channel) {
        if (lowerCased(names[channel]) != wanted) continue;
        anyCase.push_back(static_cast<ChannelIndex>(channel));
        if (names[channel] == text) exact.push_back(static_cast<ChannelIndex>(channel));
    }
    return exact.empty() ? anyCase : exact;
}

std::vector<ChannelIndex> ChannelFinder::near(std::string_view text) const {
    if (text.empty() || text.size() > kLongestCompared) return {};
    const std::string wanted = lowerCased(text);
    std::vector<std::pair<std::size_t, ChannelIndex>> ranked;
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        auto rank = unlikeness(wanted, lowerCased(shortNames_[channel]));
        if (!rank && lowerCased(longNames_[channel]).find(wanted) != std::string::npos) rank = 5;
        if (rank) ranked.emplace_back(*rank, static_cast<ChannelIndex>(channel));
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<ChannelIndex> nearest;
    for (std::size_t i = 0; i < ranked.size() && i < kMostSuggestions; ++i) nearest.push_back(ranked[i].second);
    return nearest;
}

std::string ChannelFinder::described(const std::vector<ChannelIndex>& channels) const {
    std::string text;
    for (const ChannelIndex channel : channels) {
        const std::string& name = shortNames_[channel].empty() ? longNames_[channel] : shortNames_[channel];
        text += (text.empty() ? "" : ", ") + name + " (" + std::to_string(channel) + ")";
    }
    return text;
}

std::optional<std::vector<ChannelIndex>> findAll(const ChannelFinder& finder, const std::vector<std::string>& texts,
                                                 std::string& errors) {
    std::vector<ChannelIndex> channels;
    for (const std::string& text : texts) {
        const FoundChannel found = finder.find(text);
        if (found.channel)
            channels.push_back(*found.channel);
        else
            errors += found.error + "\n";
    }
    if (!errors.empty()) return std::nullopt;
    return channels;
}

std::optional<std::vector<ChannelIndex>> findOrTell(const SharedArea* area, const std::vector<std::string>& texts,
                                                    std::ostream& err, std::string_view speaker) {
    std::string errors;
    auto channels = findAll(ChannelFinder(area), texts, errors);
    std::istringstream lines(errors);
    for (std::string line; std::getline(lines, line);) err << speaker << ": " << line << '\n';
    return channels;
}

} // namespace tallowmere::tools
