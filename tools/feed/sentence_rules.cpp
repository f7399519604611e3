#include "tools/feed/sentence_rules.hpp"

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
// clang-format on

} // namespace

SentenceRule ruleFor(std::string_view type) noexcept {
    for (const Row& row : kRules)
        if (row.type == type) return row.rule;
    return nullptr;
}

bool statusIsValid(std::string_view status) noexcept {
    return status.empty() || status == "A" || status == "D";
}

bool modeIsValid(std::string_view mode) noexcept {
    return mode != "N";
}

} // namespace tallowmere::feed
