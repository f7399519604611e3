#include "tools/record/recorder.hpp"

#include "core/channels/channel_lookup.hpp"
#include "core/channels/printable.hpp"
#include "core/channels/replay_sign.hpp"
#include "core/channels/time_scale.hpp"
#include "core/channels/value_age.hpp"
#include "core/channels/value_reading.hpp"
#include "units/unit_names.hpp"

#include <algorithm>
#include <utility>

namespace tallowmere::recording {
namespace {

ChannelInfo channelInfo(const SharedArea& area, ChannelIndex channel) {
    const UnitClass unitClass = unitClassOf(&area, channel);
    return {channel,
            printable(shortNameOf(&area, channel)),
            printable(longNameOf(&area, channel)),
            unitNameOf(unitClass).baseUnit,
            unitClass,
            kCatalogue[channel].timeoutSeconds};
}

BoatInfo boatInfo(const SharedArea& area, BoatIndex boat) {
    const BoatEntry& entry = area.boats[boat];
    return {boat, printable(readText(entry.name)), readOnce(entry.mmsi), readOnce(entry.colour)};
}

} // namespace

Recorder::Recorder(platform::Platform& platform, RecordingWriter& writer, Selection selection, std::string program)
    : platform_(platform), writer_(writer), selection_(std::move(selection)), program_(std::move(program)),
      section_(platform), values_(kChannelCount), last_(kBoatCount * kChannelCount) {}

bool Recorder::look() {
    section_.refresh();
    now_ = platform_.now();
    const SharedArea* const area = section_.area();
    const bool replay = isReplay(area);
    const bool another = session_ != section_.generation() || replay != replay_;
    if (session_ != 0 && another && !leave()) return false;
    replay_ = replay;
    if (area == nullptr) return session_ == 0 || leave();
    if (session_ == 0 && !begin()) return false;
    chooseChannels(*area);
    const auto boats = static_cast<BoatIndex>(boatsInUse(*area));
    if (selection_.boats.empty()) {
        for (BoatIndex boat = 0; boat < boats; ++boat)
            if (!lookAt(*area, boat)) return false;
    } else {
        for (const BoatIndex boat : selection_.boats)
            if (boat < boats && !lookAt(*area, boat)) return false;
    }
    return true;
}

bool Recorder::finish() {
    const bool open = std::exchange(session_, 0) != 0;
    return !open || writer_.end(platform_.now());
}

bool Recorder::begin() {
    session_ = section_.generation();
    std::ranges::fill(last_, Last{});
    described_.reset();
    boatsDescribed_.reset();
    chosen_ = 0;
    return writer_.begin({now_, replay_ ? program_ + " " + printable(kReplaySign) : program_});
}

bool Recorder::leave() {
    session_ = 0;
    for (std::size_t slot = 0; slot < last_.size(); ++slot) {
        if (!last_[slot].payload) continue;
        last_[slot].payload.reset();
        const auto boat = static_cast<BoatIndex>(slot / kChannelCount);
        if (!add(nullptr, boat, static_cast<ChannelIndex>(slot % kChannelCount), last_[slot], now_)) return false;
    }
    return writer_.end(now_);
}

/// Anew each second: who makes a section sets the flags after it is there, and programs may change them.
void Recorder::chooseChannels(const SharedArea& area) {
    const bool fresh = now_ >= chosen_ && now_ - chosen_ < kTicksPerSecond;
    if (fresh && chosen_ != 0) return;
    chosen_ = now_;
    channels_ = selection_.channels;
    for (ChannelIndex channel = 0; selection_.channels.empty() && channel < kChannelCount; ++channel)
        if (isRecordable(channel) && readOnce(area.settings[channel].log) != 0) channels_.push_back(channel);
    compactChannels_.clear();
    std::ranges::copy_if(channels_, std::back_inserter(compactChannels_),
                         [](ChannelIndex channel) { return kCatalogue[channel].compactIndex < kCompactSlotCount; });
}

bool Recorder::lookAt(const SharedArea& area, BoatIndex boat) {
    const std::vector<ChannelIndex>& channels = boat < kFullBoatCount ? channels_ : compactChannels_;
    const std::span<tlm_view_value> values(values_.data(), channels.size());
    lookAtGroup(&area, channels, boat, now_, values);
    return std::ranges::all_of(values, [&](const tlm_view_value& value) { return take(area, boat, value); });
}

bool Recorder::take(const SharedArea& area, BoatIndex boat, const tlm_view_value& value) {
    Last& last = last_[boat * kChannelCount + value.channel];
    Last seen;
    if (value.state != TLM_VIEW_NONE) {
        const Record record = asDeclared(&area, value.channel, {value.record_header, value.record_payload});
        seen = {value.stamp, static_cast<StorageKind>(record.kind()), record.payload};
        // What lies beside a number in the payload is nobody's value.
        if (seen.kind == StorageKind::Byte) seen.payload = record.byte();
        if (seen.kind == StorageKind::Integer) seen.payload = Record::ofInteger(record.integer()).payload;
    } else if (last.payload) {
        seen = {value.stamp, last.kind, std::nullopt};
    } else {
        return true; // still none
    }
    if (seen == last) return true;
    last = seen;
    // A stamp that makes no sense would put the row anywhere; then it is the moment when it was seen.
    const bool sensible = seen.stamp > 0 && seen.stamp != kNoTime && seen.stamp <= now_ + kMostAhead;
    return add(&area, boat, value.channel, seen, sensible ? seen.stamp : now_);
}

bool Recorder::add(const SharedArea* area, BoatIndex boat, ChannelIndex channel, const Last& last, std::int64_t time) {
    if (area != nullptr && !described_[channel]) {
        if (!writer_.describe(channelInfo(*area, channel))) return false;
        described_[channel] = true;
    }
    if (area != nullptr && !boatsDescribed_[boat]) {
        if (!writer_.describe(boatInfo(*area, boat))) return false;
        boatsDescribed_[boat] = true;
        boatsSeen_[boat] = true;
        counts_.boats = boatsSeen_.count();
    }
    ++counts_.rows;
    counts_.newest = std::max(counts_.newest, time);
    return writer_.add({time, channel, boat, last.kind, last.payload});
}

} // namespace tallowmere::recording
