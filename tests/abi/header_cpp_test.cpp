// The public header is the first thing that the compiler sees here, and nothing else is there in C++.
#include <tallowmere/tallowmere.h>

#include <cstddef>
#include <type_traits>

static_assert(sizeof(ChannelValue) == 16 && offsetof(ChannelValue, payload) == 8);
static_assert(std::is_standard_layout_v<ChannelValue> && std::is_trivially_copyable_v<ChannelValue>);
static_assert(std::is_same_v<ChannelIndex, uint16_t> && std::is_same_v<BoatIndex, uint16_t>);
static_assert(NO_VALUE == 32767.0 && ZAN_NO_CHANNEL == 32767 && ZAN_NO_TIME == INT64_MAX);
static_assert(ZAN_BSP == 1 && ZAN_PREDSEATEMP == 413 && ZAN_CHANNEL_COUNT == 414 && ZAN_BOAT_COUNT == 100);

// Nothing is raised into a client.
static_assert(noexcept(GetBoatNum()) && noexcept(GetZanVarNum()) && noexcept(SetMOB(0, 0)));
static_assert(noexcept(SetZanVar(1, 0, 0)) && noexcept(GetZanVar(1, nullptr, 0, nullptr)));
static_assert(noexcept(SetZanVar2(1, nullptr, 0)) && noexcept(GetZanVar2(1, nullptr, 0, nullptr)));
static_assert(noexcept(GetZanVarName(1, nullptr)) && noexcept(SetZanUserVarName(1, nullptr)));
static_assert(noexcept(GetSysVar(0, nullptr)) && noexcept(GetSysBool(0, nullptr)));
