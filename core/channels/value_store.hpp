// Typed channel values over the shared section: conversion, writing with its rules, reading.
#pragma once

#include "core/channels/context.hpp"
#include "core/channels/value_reading.hpp"

#include <cstdint>

namespace tallowmere {

/// Corrects values on their way into the section. Every core object brings one; a client's has no items and
/// brings values into range at most.
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

    /// A double in the channel's base unit (days for times) as a record. 32767.0 and doubles that the
    /// channel's kind can't hold give the no-value record; a moment of 0.0 too.
    [[nodiscard]] RecordResult doubleToRecord(ChannelIndex channel, double value) const noexcept;

    /// A record as a double (value_reading.hpp).
    [[nodiscard]] DoubleResult recordAsDouble(ChannelIndex channel, const Record& record) const noexcept {
        return tallowmere::recordAsDouble(area(), channel, record);
    }

    /// doubleToRecord and store with the stamp "now", in one.
    bool storeDouble(ChannelIndex channel, double value, BoatIndex boat) noexcept;

    /// Writes a record with its rules: refusals, angle normalisation, range check, correction, derived
    /// channels.
    /// stamp   100 ns since 1601-01-01 UTC; INT64_MAX means now
    /// True when the record reached its slot. False when refused, when boats 2 to 99 have no slot for the
    /// channel, and without a section.
    bool store(ChannelIndex channel, Record record, BoatIndex boat, std::int64_t stamp) noexcept;

    /// The current record of a channel for a boat (value_reading.hpp).
    [[nodiscard]] RecordResult fetch(ChannelIndex channel, BoatIndex boat) const noexcept {
        return fetchRecord(area(), channel, boat);
    }

    /// The same from the third value array, where programs keep processed values.
    /// calibrated   also correct a value of double kind, as a write to a calibrated channel would
    /// No boat's own bearing correction is applied; that belongs to the programs.
    [[nodiscard]] RecordResult fetchProcessed(ChannelIndex channel, BoatIndex boat, bool calibrated) const noexcept;

    /// Writes the clock into channel 0 of every boat in use and returns it.
    std::int64_t stampTime() noexcept;

    /// From now on the store has no section.
    void dropArea() noexcept { context_.area = nullptr; }

  private:
    template <class RecordFor>
    bool write(ChannelIndex channel, BoatIndex boat, std::int64_t stamp, RecordFor recordFor) noexcept;
    [[nodiscard]] double applyRules(ChannelIndex channel, double value) const noexcept;

    Context context_;
    ValueCorrector* corrector_;
};

} // namespace tallowmere
