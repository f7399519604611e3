// A section that was just made, against an image computed from offsets written out here as numbers. Every
// byte of the image is accounted for exactly once.
#include "core/channels/area_defaults.hpp"
#include "tests/channels/store_fixture.hpp"

#include <bit>
#include <vector>

namespace tallowmere::test {
namespace {

struct ListedChannel {
    std::size_t index, slot;
    int min, max, timeout;
    std::uint16_t precision;
    std::int16_t unitClass;
    int ownBoat, dampable, log, sensor;
    const char16_t *shortName, *longName;
};

constexpr ListedChannel kListed[] = {
#define ROW(...) ListedChannel{__VA_ARGS__},
#include "tests/channels/catalogue_rows.inc"
#undef ROW
};

/// Collects the bytes of the image from its start to its end, so that nothing is left out or given twice.
class Image {
  public:
    void zeros(std::size_t count) { bytes_.resize(bytes_.size() + count); }
    void byte(std::uint8_t value) { bytes_.push_back(value); }
    void littleEndian(std::uint64_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) byte(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    void number(double value) { littleEndian(std::bit_cast<std::uint64_t>(value), 8); }
    void noTime() { littleEndian(0x7FFFFFFFFFFFFFFF, 8); }
    /// The 16 bytes of a channel without a value.
    void noValue(std::int16_t unitClass) {
        if (unitClass == 1 || unitClass == 2) {
            littleEndian(3, 8);
            littleEndian(0x7FFFFFFFFFFFFFFF, 8);
        } else if (unitClass == 11) {
            littleEndian(2, 8);
            littleEndian(32767, 8);
        } else {
            littleEndian(1, 8);
            littleEndian(0x40DFFFC000000000, 8);
        }
    }
    /// The next region begins at this offset.
    void expectAt(std::size_t offset) const { ASSERT_EQ(bytes_.size(), offset); }
    [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return bytes_; }

  private:
    std::vector<std::uint8_t> bytes_;
};

void addHeader(Image& image) {
    image.zeros(8);
    image.expectAt(8);
    image.zeros(8); // host window
    image.zeros(8);
    image.expectAt(24);
    image.zeros(520); // marks file path
    image.expectAt(544);
    image.zeros(64);
    image.expectAt(608);
    image.zeros(520); // database path
    image.expectAt(1128);
    image.zeros(520); // data folder path
    image.expectAt(1648);
    image.zeros(6 * 64);
    image.expectAt(2032);
    image.zeros(8);
    image.expectAt(2040);
}

void addEvents(Image& image) {
    for (int event = 0; event < 64; ++event) {
        image.zeros(8);
        image.noTime();
        image.zeros(8); // flag and padding
        for (int i = 0; i < 3; ++i) image.number(32767.0);
    }
    image.expectAt(5112);
    image.zeros(32);
    image.expectAt(5144);
}

void addSystemValues(Image& image) {
    for (int cell = 0; cell < 90; ++cell) image.littleEndian(32767, 4);
    image.expectAt(5504);
    for (double value : {15.85, 15.8, 4.4, 0.0, 3.0, 1.0, 1.0, 10.0, 5.0, 5.0, 5.0, 3.0}) image.number(value);
    for (int index = 12; index < 80; ++index) image.number(32767.0);
    image.expectAt(6144);
    for (unsigned value : {0U, 0U, 0U, 0U, 0U, 0U, 5U, 0U, 0U, 0U, 60U, 0U, 0U}) image.littleEndian(value, 4);
    image.expectAt(6196);
    for (int flag = 0; flag < 60; ++flag) {
        const bool set =
            flag == 0 || flag == 1 || flag == 3 || flag == 7 || flag == 21 || flag == 40 || flag == 41 || flag == 42;
        image.byte(set ? 1 : 0);
    }
    image.expectAt(6256);
    for (int time = 0; time < 15; ++time) image.noTime();
    image.expectAt(6376);
    image.littleEndian(0, 4); // boat count
    image.expectAt(6380);
}

void addSettings(Image& image) {
    for (const ListedChannel& channel : kListed) {
        image.zeros(3);                           // calibrate, blocked, written
        image.byte(channel.index == 413 ? 1 : 0); // log
        image.zeros(2);                           // write-lockable, padding
        image.littleEndian(channel.precision, 2);
        image.littleEndian(0, 2); // damping
        image.littleEndian(static_cast<std::uint16_t>(channel.unitClass), 2);
        image.zeros(64 + 32); // names
    }
    image.expectAt(51092);
}

void addBoats(Image& image) {
    for (int boat = 0; boat < 100; ++boat) {
        image.littleEndian(32767, 4);
        image.zeros(2);  // has data, a gap
        image.zeros(64); // name
        image.zeros(2);
        image.littleEndian(0, 4);        // MMSI
        image.littleEndian(0x90EE90, 4); // light green
    }
    image.expectAt(59092);
    image.zeros(4);
    image.expectAt(59096);
}

void addFullBlocks(Image& image) {
    for (int channel = 0; channel < 414; ++channel) image.noTime();
    image.expectAt(62408);
    for (const ListedChannel& channel : kListed) image.noValue(channel.unitClass);
    image.expectAt(69032);
    for (const ListedChannel& channel : kListed) image.noValue(channel.unitClass);
    image.expectAt(75656);
    for (const ListedChannel& channel : kListed) image.noValue(channel.unitClass);
    image.expectAt(59096 + 23184);
    image.zeros(414);
    image.expectAt(59096 + 23598);
    image.zeros(414 * 16);
    image.zeros(2);
    image.expectAt(89320);
    image.zeros(30224); // boat 1: left as a new section comes
    image.expectAt(119544);
}

void addCompactBlocks(Image& image) {
    std::int16_t classOfSlot[34] = {};
    for (const ListedChannel& channel : kListed)
        if (channel.slot < 34) classOfSlot[channel.slot] = channel.unitClass;
    for (std::size_t boat = 2; boat < 100; ++boat) {
        image.expectAt(116824 + 1360 * boat);
        for (int slot = 0; slot < 34; ++slot) image.noTime();
        for (std::int16_t unitClass : classOfSlot) image.noValue(unitClass);
        for (std::int16_t unitClass : classOfSlot) image.noValue(unitClass);
    }
    image.expectAt(252824);
}

void addTail(Image& image) {
    image.zeros(352);
    image.expectAt(253176);
    image.zeros(2);
    image.littleEndian(32767, 4);
    image.zeros(62);
    image.expectAt(253244);
    image.zeros(32);
    image.expectAt(253276);
    image.zeros(32); // man-overboard name
    image.zeros(4);
    image.expectAt(253312);
    image.number(32767.0);
    image.number(32767.0);
    image.expectAt(253328);
    image.zeros(2); // flags
    image.zeros(6);
    image.expectAt(253336);
}

Image newSection() {
    Image image;
    addHeader(image);
    addEvents(image);
    addSystemValues(image);
    addSettings(image);
    addBoats(image);
    addFullBlocks(image);
    addCompactBlocks(image);
    addTail(image);
    return image;
}

TEST(SectionLayout, SectionHas253336Bytes) {
    EXPECT_EQ(sizeof(SharedArea), 253336U);
    EXPECT_EQ(kSharedAreaBytes, 253336U);
}

TEST(SectionLayout, NewSectionEqualsTheImageByteForByte) {
    SectionMemory memory;
    initialiseArea(*memory.area());
    const Image image = newSection();
    ASSERT_EQ(image.bytes().size(), kSectionBytes);
    EXPECT_EQ(changesOutside(image.bytes(), RawSection(memory.bytes()).copy(), {}), "");
}

TEST(SectionLayout, InitialisingTwiceGivesTheSameBytes) {
    SectionMemory memory;
    initialiseArea(*memory.area());
    initialiseArea(*memory.area());
    EXPECT_EQ(changesOutside(newSection().bytes(), RawSection(memory.bytes()).copy(), {}), "");
}

TEST(SectionLayout, BlockOfBoatOneIsLeftAlone) {
    SectionMemory memory;
    std::memset(memory.bytes(), 0xAA, kSectionBytes);
    initialiseArea(*memory.area());
    const auto bytes = RawSection(memory.bytes()).copy();
    for (std::size_t i = 0; i < 30224; ++i) ASSERT_EQ(bytes[89320 + i], 0xAA) << i;
}

TEST(SectionLayout, DefaultsAreWrittenWhateverTheBytesWereBefore) {
    SectionMemory memory;
    std::memset(memory.bytes(), 0xAA, kSectionBytes);
    initialiseArea(*memory.area());
    const RawSection raw(memory.bytes());
    EXPECT_EQ(raw.get<std::uint64_t>(8), 0U);
    for (std::size_t text : {24U, 544U, 608U, 1128U, 1648U, 1712U, 1776U, 1840U, 1904U, 1968U})
        EXPECT_EQ(raw.get<char16_t>(text), u'\0') << text;
    EXPECT_EQ(raw.get<std::uint32_t>(6376), 0U);
    EXPECT_EQ(raw.get<std::uint32_t>(253178), 32767U);
    EXPECT_EQ(raw.get<std::uint8_t>(253244), 0U);
    EXPECT_EQ(raw.get<std::uint8_t>(253276), 0U);
    EXPECT_EQ(raw.get<std::uint64_t>(253312), kNoValueBits);
    EXPECT_EQ(raw.get<std::uint8_t>(253328), 0U);
    for (std::size_t channel = 0; channel < 414; ++channel) {
        EXPECT_EQ(raw.get<std::uint32_t>(place::settings(channel)), channel == 413 ? 0x01000000U : 0U) << channel;
        EXPECT_EQ(raw.get<std::uint8_t>(place::writeLockable(channel)), 0) << channel;
        EXPECT_EQ(raw.get<std::uint16_t>(place::damping(channel)), 0) << channel;
        EXPECT_EQ(raw.get<std::uint8_t>(59096 + 23184 + channel), 0) << channel;
        EXPECT_EQ(raw.get<std::uint8_t>(59096 + 23598 + 16 * channel), 0) << channel;
        EXPECT_EQ(raw.get<char16_t>(place::longName(channel)), u'\0') << channel;
        EXPECT_EQ(raw.get<char16_t>(place::shortName(channel)), u'\0') << channel;
    }
    for (std::size_t boat = 0; boat < 100; ++boat) {
        EXPECT_EQ(raw.get<std::uint32_t>(place::boat(boat)), 32767U) << boat;
        EXPECT_EQ(raw.get<std::uint8_t>(place::hasData(boat)), 0) << boat;
        EXPECT_EQ(raw.get<char16_t>(place::boatName(boat)), u'\0') << boat;
        EXPECT_EQ(raw.get<std::uint32_t>(place::mmsi(boat)), 0U) << boat;
        EXPECT_EQ(raw.get<std::uint32_t>(place::colour(boat)), 0x90EE90U) << boat;
    }
    for (std::size_t event = 0; event < 64; ++event) {
        EXPECT_EQ(raw.get<std::int64_t>(2040 + 48 * event + 8), INT64_MAX) << event;
        EXPECT_EQ(raw.get<std::uint8_t>(2040 + 48 * event + 16), 0) << event;
    }
    for (std::size_t index = 0; index < 13; ++index)
        EXPECT_EQ(raw.get<std::int32_t>(place::integer(index)), index == 6 ? 5 : index == 10 ? 60 : 0) << index;
    for (std::size_t index = 8; index < 21; ++index) EXPECT_EQ(raw.get<std::uint8_t>(place::flag(index)), 0) << index;
    EXPECT_EQ(raw.get<std::uint64_t>(place::variable(3)), 0U);
    EXPECT_EQ(raw.get<std::uint8_t>(253329), 0U);
}

TEST(SectionLayout, PlacesOfValuesAgreeWithTheRecords) {
    SectionMemory memory;
    const auto offset = [&memory](const void* field) {
        return static_cast<std::size_t>(static_cast<const std::byte*>(field) - memory.bytes());
    };
    const SharedArea& area = *memory.area();
    for (std::size_t boat : {0U, 1U}) {
        const FullBoatBlock& block = area.fullBlocks[boat];
        for (std::size_t channel : {0U, 1U, 200U, 413U}) {
            EXPECT_EQ(offset(&block.stamps[channel]), place::fullStamp(channel, boat));
            EXPECT_EQ(offset(&block.current[channel]), place::fullValue(channel, boat));
            EXPECT_EQ(offset(&block.second[channel]), place::fullSecond(channel, boat));
            EXPECT_EQ(offset(&block.third[channel]), place::fullThird(channel, boat));
        }
    }
    for (std::size_t boat : {2U, 50U, 99U}) {
        const CompactBoatBlock& block = area.compactBlocks[boat - 2];
        for (std::size_t slot : {0U, 1U, 33U}) {
            EXPECT_EQ(offset(&block.stamps[slot]), place::compactStamp(slot, boat));
            EXPECT_EQ(offset(&block.current[slot]), place::compactValue(slot, boat));
            EXPECT_EQ(offset(&block.third[slot]), place::compactThird(slot, boat));
        }
    }
    EXPECT_EQ(offset(&area.settings[413].shortName), 6380U + 108 * 413 + 76);
    EXPECT_EQ(offset(&area.boats[99].colour), 51092U + 80 * 99 + 76);
    EXPECT_EQ(offset(&area.alternates.cells[9][8]), 5144U + 4 * 89);
    EXPECT_EQ(offset(&area.trackReset), 253176U);
}

} // namespace
} // namespace tallowmere::test
