// A section whose every byte is nonsense: no write or read may crash, hang or leave its records.
#include "core/channels/mob_mark.hpp"
#include "core/channels/system_values.hpp"
#include "tests/channels/store_fixture.hpp"

#include <random>

namespace tallowmere::test {
namespace {

class HostileSection : public StoreTest {
  protected:
    /// Every channel is written and read for a number of boats.
    void useEverything() {
        const BoatIndex boats[] = {0, 1, 2, 50, 99, 100, 65535};
        for (BoatIndex boat : boats)
            for (int channel = 0; channel <= 415; ++channel) {
                const auto index = static_cast<ChannelIndex>(channel);
                for (double value : {1.0, -400.0, 1e300, kNaN, 32767.0}) write(index, value, boat);
                store.store(index, Record{0xFFFFFFFFFFFFFFFF, 0x8000000000000000}, boat, kStampNow);
                (void)store.recordAsDouble(index, store.fetch(index, boat).record);
            }
    }
};

TEST_F(HostileSection, FilledWithAnyOneByteDoesNoHarm) {
    for (int byte : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        std::memset(memory.bytes(), byte, kSectionBytes);
        useEverything();
    }
}

TEST_F(HostileSection, FilledWithRandomBytesDoesNoHarm) {
    std::mt19937_64 random(363);
    for (int round = 0; round < 4; ++round) {
        for (std::size_t i = 0; i < kSectionBytes; i += 8) raw.put<std::uint64_t>(i, random());
        useEverything();
    }
}

TEST_F(HostileSection, WritesStayInTheirRecords) {
    std::memset(memory.bytes(), 0xFF, kSectionBytes); // blocked and write-locked: only the clock moves
    const auto before = raw.copy();
    useEverything();
    const auto after = raw.copy();
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + 59096, after.begin()));
    EXPECT_TRUE(std::equal(before.begin() + 252824, before.end(), after.begin() + 252824));
}

TEST_F(HostileSection, EveryUnitClassIsTaken) {
    for (int unitClass = -300; unitClass <= 300; ++unitClass) {
        for (std::size_t channel : {1U, 6U, 146U, 180U, 203U, 256U, 269U, 284U})
            raw.put<std::int16_t>(place::unitClass(channel), static_cast<std::int16_t>(unitClass));
        for (ChannelIndex channel : {ChannelIndex{1}, ChannelIndex{6}, ChannelIndex{146}, ChannelIndex{180},
                                     ChannelIndex{203}, ChannelIndex{256}, ChannelIndex{269}, ChannelIndex{284}}) {
            for (double value : {1.0, 45983.5, -1e300, kNaN, kInfinity}) {
                EXPECT_TRUE(write(channel, value));
                (void)read(channel);
            }
        }
    }
}

TEST_F(HostileSection, SystemValuesAndMarkSurvive) {
    for (int byte : {0x01, 0x7F, 0xFF}) {
        std::memset(memory.bytes(), byte, kSectionBytes);
        SystemValues system(memory.area());
        for (std::size_t i = 0; i < 100; ++i) {
            (void)system.variable(i);
            (void)system.flag(i);
            (void)system.integer(i);
        }
        machine.postResult = 5;
        EXPECT_EQ(raiseManOverboard(store.context(), kNaN, kInfinity), 5);
        EXPECT_EQ(raw.get<std::uint8_t>(place::kMobName + 31), 0);
    }
}

} // namespace
} // namespace tallowmere::test
