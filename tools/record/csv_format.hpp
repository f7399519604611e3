// The columns of a recording in CSV.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tallowmere::recording::csv {

enum Column : std::size_t { kTime, kBoat, kChannel, kName, kUnit, kClass, kKind, kValue, kColumnCount };

inline constexpr std::string_view kHeader = "time,boat,channel,name,unit,class,kind,value";
/// By StorageKind.
inline constexpr std::array<std::string_view, 4> kKindNames{"byte", "double", "integer", "time"};
/// In the kind's column of a row that is a session's first or last.
inline constexpr std::string_view kStart = "start";
inline constexpr std::string_view kEnd = "end";
/// A number that is none; no other text stands for it.
inline constexpr std::string_view kNotANumber = "nan";

} // namespace tallowmere::recording::csv
