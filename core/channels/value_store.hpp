// Typed channel values over the shared section: conversion, writing with its rules, reading.
#pragma once

#include "core/channels/channel_lookup.hpp"
#include "core/channels/context.hpp"

#include <cstdint>

namespace tallowmere {

/// A record and whether it holds a value of its channel.
struct RecordResult {
    Record record;
    bool holdsValue = false;
};

/// A double and whether it is a value (not 32767.0).
struct DoubleResult {
    double value = NO_VALUE;
    bool holdsValue = false;
};

/// Corrects values on their way into the section. A host's core object brings one; without it values are
/// stored as written.
class ValueCorrector {
  public:
    /// The value to store for a value (never NO_VALUE) written to a channel whose `calibrate` byte is set.
    [[nodiscard]] virtual double correct(ChannelIndex channel, double value) noexcept = 0;

  protected:
    ~ValueCorrector() = default;
};

/// The value store of one process. Any thread; nothing is locked. Without a section reads report no value
/// and writes fail.
class ValueStore {
  public:
    /// Both must outlive the store; `corrector` may be null.
    explicit ValueStore(Context context, ValueCorrector* corrector = nullptr) noexcept
        : context_(context), corrector_(corrector) {}

    [[nodiscard]] const Context& context() const noexcept { return context_; }
    [[nodiscard]] SharedArea* area() const noexcept { return context_.area; }

    /// The channel's record without a value: 32767.0, 32767 or INT64_MAX by its storage kind.
    [[nodiscard]] Record noValueRecord(ChannelIndex channel) const noexcept;

    /// True unless the payload equals the no-value payload of the channel's storage kind. A NaN is a
    /// value. The record's own kind byte plays no part.
    [[nodiscard]] bool holdsValue(ChannelIndex channel, const Record& record) const noexcept;

    /// A double in the channel's base unit (days for times) as a record. 32767.0 and doubles that the
    /// channel's kind can't hold give the no-value record; a moment of 0.0 too.
    [[nodiscard]] RecordResult doubleToRecord(ChannelIndex channel, double value) const noexcept;

    /// A record as a double, by the record's own kind byte. 32767.0 when it holds no value or can't be
    /// converted. Moments come in whole seconds. A time span of INT64_MAX is NaN.
    [[nodiscard]] DoubleResult recordAsDouble(ChannelIndex channel, const Record& record) const noexcept;

    /// Writes a record with its rules: refusals, angle normalisation, range check, correction, derived
    /// channels.
    /// stamp   100 ns since 1601-01-01 UTC; INT64_MAX means now
    /// True when the record reached its slot. False when refused, when boats 2 to 99 have no slot for the
    /// channel, and without a section.
    bool store(ChannelIndex channel, Record record, BoatIndex boat, std::int64_t stamp) noexcept;

    /// The current record of a channel for a boat; its no-value record when there is none (channel out of
    /// range, boat at or above the boat count, no slot, no section).
    [[nodiscard]] RecordResult fetch(ChannelIndex channel, BoatIndex boat) const noexcept;

    /// Writes the clock into channel 0 of every boat in use and returns it.
    std::int64_t stampTime() noexcept;

    /// From now on the store has no section.
    void dropArea() noexcept { context_.area = nullptr; }

  private:
    Context context_;
    ValueCorrector* corrector_;
};

} // namespace tallowmere
