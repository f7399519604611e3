// The header is the first thing that the compiler sees here, and nothing else is there in C++17.
#include <tallowmere/view.hpp>

#include <type_traits>
#include <vector>

using tallowmere::view::Group;
using tallowmere::view::Value;
using tallowmere::view::View;

static_assert(!std::is_copy_constructible_v<View> && !std::is_copy_assignable_v<View>);
static_assert(std::is_nothrow_move_constructible_v<View> && std::is_nothrow_move_assignable_v<View>);
static_assert(noexcept(tlm_view_refresh(nullptr)) && noexcept(tlm_view_read(nullptr, 0, 0, nullptr)));
static_assert(sizeof(Value) == sizeof(tlm_view_value));
static_assert(std::is_trivially_copyable_v<Value>);

// Braces make a group, also of one and of none.
static_assert(std::is_same_v<decltype(std::declval<View>().read(ZAN_BSP)), Value>);
static_assert(std::is_same_v<decltype(std::declval<View>().read({ZAN_BSP})), Group>);
static_assert(std::is_same_v<decltype(std::declval<View>().read({})), Group>);
static_assert(std::is_same_v<decltype(std::declval<View>().read({ZAN_BSP, ZAN_AWA}, 3)), Group>);
static_assert(std::is_same_v<decltype(std::declval<View>().read(std::vector<std::uint16_t>{ZAN_BSP})), Group>);
