// Every channel for three kinds of boat: what is written is read, and lies where the layout says.
#include "tests/channels/store_fixture.hpp"

#include <cmath>

namespace tallowmere::test {
namespace {

struct ListedChannel {
    std::size_t index, slot;
    int min, max, timeout, precision, unitClass, ownBoat, dampable, log, sensor;
    const char16_t *shortName, *longName;
};
constexpr ListedChannel kListed[] = {
#define ROW(...) ListedChannel{__VA_ARGS__},
#include "tests/channels/catalogue_rows.inc"
#undef ROW
};

/// A value of its own for each channel, inside its range.
double valueFor(const ListedChannel& channel) {
    const auto index = static_cast<double>(channel.index);
    if (channel.unitClass == 1) return 45000.0 + index;
    if (channel.unitClass == 2) return index / 1024.0;
    if (channel.unitClass == 11) return index;
    if (channel.min == channel.max) return index + 0.125;
    return channel.min + (channel.max - channel.min) * (index + 1) / 415.0;
}

class RoundTrip : public StoreTest, public ::testing::WithParamInterface<BoatIndex> {};
INSTANTIATE_TEST_SUITE_P(Boats, RoundTrip, ::testing::Values(BoatIndex{0}, BoatIndex{1}, BoatIndex{2}, BoatIndex{99}));

TEST_P(RoundTrip, EveryChannelReadsBackWhatWasWritten) {
    const BoatIndex boat = GetParam();
    for (const ListedChannel& listed : kListed) {
        if (listed.index == 0) continue;
        SCOPED_TRACE(listed.index);
        const auto channel = static_cast<ChannelIndex>(listed.index);
        const double value = valueFor(listed);
        const bool kept = boat < 2 || listed.slot < 34;
        machine.now += 10;
        EXPECT_EQ(write(channel, value, boat), kept);
        const RecordResult fetched = store.fetch(channel, boat);
        EXPECT_EQ(fetched.holdsValue, kept);
        if (!kept) continue;
        EXPECT_EQ(bitsOf(store.recordAsDouble(channel, fetched.record).value), bitsOf(value));
        const auto stampAt = boat < 2 ? place::fullStamp(listed.index, boat) : place::compactStamp(listed.slot, boat);
        const auto valueAt = boat < 2 ? place::fullValue(listed.index, boat) : place::compactValue(listed.slot, boat);
        EXPECT_EQ(raw.get<std::int64_t>(stampAt), machine.now);
        EXPECT_EQ(raw.get<std::uint64_t>(valueAt), fetched.record.header);
        EXPECT_EQ(raw.get<std::uint64_t>(valueAt + 8), fetched.record.payload);
        EXPECT_EQ(raw.get<std::uint8_t>(place::written(listed.index)), 1);
    }
}

TEST_P(RoundTrip, EveryChannelCanBeCleared) {
    const BoatIndex boat = GetParam();
    for (const ListedChannel& listed : kListed) {
        if (listed.index == 0 || (boat >= 2 && listed.slot >= 34)) continue;
        const auto channel = static_cast<ChannelIndex>(listed.index);
        EXPECT_TRUE(write(channel, valueFor(listed), boat));
        EXPECT_TRUE(write(channel, 32767.0, boat));
        EXPECT_FALSE(store.fetch(channel, boat).holdsValue) << channel;
        EXPECT_EQ(store.fetch(channel, boat).record, Record::none(storageKindOf(store.area(), channel))) << channel;
    }
}

TEST_P(RoundTrip, ChannelsDoNotTouchEachOther) {
    const BoatIndex boat = GetParam();
    for (const ListedChannel& listed : kListed)
        if (listed.index != 0) write(static_cast<ChannelIndex>(listed.index), valueFor(listed), boat);
    for (const ListedChannel& listed : kListed) {
        // The two that a write of another channel derives.
        if (listed.index == 0 || listed.index == 256 || listed.index == 284) continue;
        if (boat >= 2 && listed.slot >= 34) continue;
        EXPECT_EQ(bitsOf(read(static_cast<ChannelIndex>(listed.index), boat)), bitsOf(valueFor(listed)))
            << listed.index;
    }
}

} // namespace
} // namespace tallowmere::test
