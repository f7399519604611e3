#include "core/channels/section_name.hpp"

#include "core/channels/shared_area.hpp"

#include <cstdio>

namespace tallowmere {
namespace {

constexpr int kLayoutNumber = 363;

} // namespace

std::u16string sectionName() {
    char name[64];
    const int length = std::snprintf(name, sizeof name, "ZanCore_%d_%zu", kLayoutNumber, kSharedAreaBytes);
    return {name, name + length};
}

} // namespace tallowmere
