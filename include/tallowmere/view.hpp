// Tallowmere view for C++17 and later: view.h with an owner, optionals and string views. Nothing is added to what
// view.h promises; read that for ages, groups, threads and what a view does not do.
#ifndef TALLOWMERE_VIEW_HPP
#define TALLOWMERE_VIEW_HPP

// Visual Studio says its standard in _MSVC_LANG.
#if __cplusplus < 201703L && (!defined(_MSVC_LANG) || _MSVC_LANG < 201703L)
#error "tallowmere/view.hpp needs C++17 or later (-std=c++17, /std:c++17)"
#endif

#include <tallowmere/view.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tallowmere::view {

enum class State { NoSection = TLM_VIEW_NO_SECTION, Attached = TLM_VIEW_ATTACHED, WritersGone = TLM_VIEW_WRITERS_GONE };
enum class Freshness {
    None = TLM_VIEW_NONE,
    Fresh = TLM_VIEW_FRESH,
    Stale = TLM_VIEW_STALE,
    Timeless = TLM_VIEW_TIMELESS
};

/// One value with its age.
class Value {
  public:
    Value() = default;
    explicit Value(const tlm_view_value& raw) noexcept : raw_(raw) {}

    /// In the base unit; empty when there is none. A stale value is a value.
    [[nodiscard]] std::optional<double> number() const noexcept {
        return raw_.state != TLM_VIEW_NONE ? std::optional(raw_.value) : std::nullopt;
    }
    /// The number unless it is stale.
    [[nodiscard]] std::optional<double> current() const noexcept {
        return raw_.state != TLM_VIEW_STALE ? number() : std::nullopt;
    }
    /// Empty when it can't be told.
    [[nodiscard]] std::optional<double> ageSeconds() const noexcept {
        return raw_.age_seconds >= 0 ? std::optional(raw_.age_seconds) : std::nullopt;
    }
    [[nodiscard]] Freshness freshness() const noexcept { return static_cast<Freshness>(raw_.state); }
    /// The channel that was asked for, and the one that was read.
    [[nodiscard]] std::uint16_t channel() const noexcept { return raw_.channel; }
    [[nodiscard]] std::optional<std::uint16_t> source() const noexcept {
        return raw_.source != TLM_VIEW_NO_CHANNEL ? std::optional(raw_.source) : std::nullopt;
    }
    [[nodiscard]] const tlm_view_value& raw() const noexcept { return raw_; }

  private:
    tlm_view_value raw_{TLM_VIEW_NO_VALUE,   TLM_VIEW_NO_AGE,     TLM_VIEW_NO_TIME, 0, 0,
                        TLM_VIEW_NO_CHANNEL, TLM_VIEW_NO_CHANNEL, TLM_VIEW_NONE,    0, {}};
};

/// What a channel is. The texts live as long as the object.
class Channel {
  public:
    explicit Channel(const tlm_view_channel& raw) noexcept : raw_(raw) {}

    [[nodiscard]] std::uint16_t number() const noexcept { return raw_.channel; }
    [[nodiscard]] std::string_view name() const noexcept { return raw_.short_name; }
    [[nodiscard]] std::string_view longName() const noexcept { return raw_.long_name; }
    [[nodiscard]] std::string_view unit() const noexcept { return raw_.unit; }
    /// Empty: never stale.
    [[nodiscard]] std::optional<unsigned> timeoutSeconds() const noexcept {
        return raw_.timeout_seconds != 0 ? std::optional<unsigned>(raw_.timeout_seconds) : std::nullopt;
    }
    /// Decimals to show; empty: not a number.
    [[nodiscard]] std::optional<unsigned> precision() const noexcept {
        return raw_.precision != TLM_VIEW_NO_PRECISION ? std::optional<unsigned>(raw_.precision) : std::nullopt;
    }
    [[nodiscard]] const tlm_view_channel& raw() const noexcept { return raw_; }

  private:
    tlm_view_channel raw_;
};

/// A boat's entry. The name lives as long as the object.
class Boat {
  public:
    explicit Boat(const tlm_view_boat& raw) noexcept : raw_(raw) {}

    [[nodiscard]] std::uint16_t number() const noexcept { return raw_.boat; }
    [[nodiscard]] std::string_view name() const noexcept { return raw_.name; }
    [[nodiscard]] bool isInUse() const noexcept { return raw_.in_use != 0; }
    [[nodiscard]] std::optional<std::uint32_t> mmsi() const noexcept {
        return raw_.mmsi != 0 ? std::optional(raw_.mmsi) : std::nullopt;
    }
    [[nodiscard]] const tlm_view_boat& raw() const noexcept { return raw_; }

  private:
    tlm_view_boat raw_;
};

/// Values of one boat. `isOfOneMoment` says whether all of them stood in the section together.
struct Group {
    std::vector<Value> values; // in the order that they were asked for
    tlm_view_group raw{};
    [[nodiscard]] bool isOfOneMoment() const noexcept { return raw.quiet != 0; }
};

/// A view of the section. One thread at a time; moved, never copied. A view that was moved from has no section.
class View {
  public:
    /// Throws std::bad_alloc when memory is short, and nothing else.
    View() : view_(tlm_view_open()) {
        if (view_ == nullptr) throw std::bad_alloc();
    }
    View(View&& other) noexcept : view_(std::exchange(other.view_, nullptr)) {}
    View& operator=(View&& other) noexcept {
        if (this != &other) {
            tlm_view_close(view_);
            view_ = std::exchange(other.view_, nullptr);
        }
        return *this;
    }
    ~View() { tlm_view_close(view_); }

    /// Call before each round of reading.
    State refresh() noexcept { return static_cast<State>(tlm_view_refresh(view_)); }
    State refreshNow() noexcept { return static_cast<State>(tlm_view_refresh_now(view_)); }
    [[nodiscard]] State state() const noexcept { return static_cast<State>(tlm_view_state(view_)); }
    [[nodiscard]] std::uint32_t generation() const noexcept { return tlm_view_generation(view_); }

    /// A recording is being played: the values are not live.
    [[nodiscard]] bool isReplay() const noexcept { return tlm_view_is_replay(view_) != 0; }

    /// Empty for 414 and above.
    [[nodiscard]] std::optional<Channel> channel(std::uint16_t number) const noexcept {
        tlm_view_channel info;
        return tlm_view_get_channel(view_, number, &info) != 0 ? std::optional<Channel>(info) : std::nullopt;
    }
    [[nodiscard]] std::optional<std::uint16_t> findChannel(std::string_view name) const {
        const std::uint16_t found = tlm_view_find_channel(view_, std::string(name).c_str());
        return found != TLM_VIEW_NO_CHANNEL ? std::optional(found) : std::nullopt;
    }
    [[nodiscard]] std::uint16_t boatCount() const noexcept { return tlm_view_boat_count(view_); }
    /// Empty for 100 and above and without a section.
    [[nodiscard]] std::optional<Boat> boat(std::uint16_t number) const noexcept {
        tlm_view_boat info;
        return tlm_view_get_boat(view_, number, &info) != 0 ? std::optional<Boat>(info) : std::nullopt;
    }
    [[nodiscard]] std::optional<std::uint16_t> findBoat(std::string_view name) const {
        const std::int32_t found = tlm_view_find_boat(view_, std::string(name).c_str());
        return found >= 0 ? std::optional(static_cast<std::uint16_t>(found)) : std::nullopt;
    }

    [[nodiscard]] Value read(std::uint16_t channel, std::uint16_t boat = 0) const noexcept {
        tlm_view_value value;
        (void)tlm_view_read(view_, channel, boat, &value);
        return Value(value);
    }
    [[nodiscard]] Group read(const std::vector<std::uint16_t>& channels, std::uint16_t boat = 0) const {
        return readGroup(channels.data(), channels.size(), boat);
    }
    /// In braces: read({ZAN_BSP}) is a group of one.
    [[nodiscard]] Group read(std::initializer_list<std::uint16_t> channels, std::uint16_t boat = 0) const {
        return readGroup(channels.begin(), channels.size(), boat);
    }

    [[nodiscard]] std::optional<double> variable(std::uint16_t index) const noexcept {
        double value = 0;
        return tlm_view_get_variable(view_, index, &value) != 0 ? std::optional(value) : std::nullopt;
    }
    [[nodiscard]] std::optional<std::int32_t> integer(std::uint16_t index) const noexcept {
        std::int32_t value = 0;
        return tlm_view_get_integer(view_, index, &value) != 0 ? std::optional(value) : std::nullopt;
    }
    [[nodiscard]] std::optional<bool> flag(std::uint16_t index) const noexcept {
        std::uint8_t value = 0;
        return tlm_view_get_flag(view_, index, &value) != 0 ? std::optional(value != 0) : std::nullopt;
    }
    /// Empty when nobody has raised an alarm.
    [[nodiscard]] std::optional<tlm_view_mob> manOverboard() const noexcept {
        tlm_view_mob mob;
        return tlm_view_get_mob(view_, &mob) != 0 ? std::optional(mob) : std::nullopt;
    }

    /// For the functions of view.h.
    [[nodiscard]] tlm_view* get() const noexcept { return view_; }

  private:
    [[nodiscard]] Group readGroup(const std::uint16_t* channels, std::size_t count, std::uint16_t boat) const {
        std::vector<tlm_view_value> values(count);
        Group group;
        (void)tlm_view_read_group(view_, boat, channels, static_cast<std::uint32_t>(count), values.data(), &group.raw);
        group.values.reserve(count);
        for (const tlm_view_value& value : values) group.values.emplace_back(value);
        return group;
    }

    tlm_view* view_;
};

} // namespace tallowmere::view

#endif
