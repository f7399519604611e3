#include "tools/feed/sentence_rules.hpp"

#include <span>

namespace tallowmere::feed {
namespace {

struct Row {
    std::string_view type;
    SentenceRule rule;
};

// clang-format off
constexpr Row kRules[] = {
    {"DBS", applyDbt}, // laid out as DBT; measured from the surface instead of the transducer
    {"DBT", applyDbt},
    {"DPT", applyDpt},
    {"GGA", applyGga},
    {"GLL", applyGll},
    {"HDG", applyHdg},
    {"HDM", applyHdm},
    {"HDT", applyHdt},
    {"MDA", applyMda},
    {"MTW", applyMtw},
    {"MWD", applyMwd},
    {"MWV", applyMwv},
    {"RMC", applyRmc},
    {"ROT", applyRot},
    {"RSA", applyRsa},
    {"VHW", applyVhw},
    {"VLW", applyVlw},
    {"VTG", applyVtg},
    {"VWR", applyVwr},
    {"VWT", applyVwt},
    {"XDR", applyXdr},
    {"ZDA", applyZda},
};
constexpr Row kOwnRules[] = {
    {"PTLML", applyStartLine},
    {"PTLMT", applyStartTimes},
};
// clang-format on

SentenceRule ruleIn(std::span<const Row> rows, std::string_view type) noexcept {
    for (const Row& row : rows)
        if (row.type == type) return row.rule;
    return nullptr;
}

} // namespace

SentenceRule ruleFor(const nmea::Sentence& sentence) noexcept {
    if (sentence.start() != '$') return nullptr;
    return sentence.isStandard() ? ruleIn(kRules, sentence.type()) : ruleIn(kOwnRules, sentence.address());
}

bool statusIsValid(std::string_view status) noexcept {
    return status.empty() || status == "A" || status == "D";
}

bool modeIsValid(std::string_view mode) noexcept {
    return mode != "N";
}

} // namespace tallowmere::feed
