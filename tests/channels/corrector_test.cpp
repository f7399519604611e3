// When a value is handed to the corrector, and what becomes of the corrected value.
#include "tests/channels/store_fixture.hpp"

#include <vector>

namespace tallowmere::test {
namespace {

class RecordingCorrector final : public ValueCorrector {
  public:
    struct Call {
        ChannelIndex channel;
        double value;
    };
    [[nodiscard]] double correct(ChannelIndex channel, double value) noexcept override {
        calls.push_back({channel, value});
        return value + offset;
    }
    double offset = 0.5;
    std::vector<Call> calls;
};

/// Made before the store that is given it.
struct HasCorrector {
    RecordingCorrector corrector;
};

class Correction : protected HasCorrector, public StoreTest {
  protected:
    Correction() : StoreTest(&corrector) {}
    void calibrate(ChannelIndex channel, std::uint8_t byte = 1) {
        raw.put<std::uint8_t>(place::calibrate(channel), byte);
    }
    void expectOneCall(ChannelIndex channel, double value) {
        ASSERT_EQ(corrector.calls.size(), 1U);
        EXPECT_EQ(corrector.calls[0].channel, channel);
        EXPECT_EQ(bitsOf(corrector.calls[0].value), bitsOf(value));
        corrector.calls.clear();
    }
};

TEST_F(Correction, IsAskedExactlyWhenTheChannelsByteIsSet) {
    write(1, 6.0);
    EXPECT_TRUE(corrector.calls.empty());
    EXPECT_EQ(stored(1), 6.0);
    calibrate(1);
    write(1, 6.0);
    expectOneCall(1, 6.0);
    EXPECT_EQ(stored(1), 6.5);
    write(3, 6.0); // another channel
    EXPECT_TRUE(corrector.calls.empty());
    calibrate(1, 0x80); // any byte but 0
    write(1, 7.0);
    expectOneCall(1, 7.0);
}

TEST_F(Correction, IsAskedForEveryBoat) {
    calibrate(1);
    write(1, 6.0, 1);
    expectOneCall(1, 6.0);
    EXPECT_EQ(stored(1, 1), 6.5);
    write(1, 6.0, 42);
    expectOneCall(1, 6.0);
    EXPECT_EQ(raw.get<double>(place::compactValue(10, 42) + 8), 6.5);
}

TEST_F(Correction, ComesAfterNormalisation) {
    calibrate(6);
    write(6, 370.0);
    expectOneCall(6, 10.0);
    EXPECT_EQ(stored(6), 10.5);
}

TEST_F(Correction, ComesAfterTheRangeCheckWhichIsNotRepeated) {
    calibrate(3);
    write(3, 150.0);
    expectOneCall(3, 150.0);
    EXPECT_EQ(stored(3), 150.5);
    write(3, 150.25); // out of range: nothing left to correct
    EXPECT_TRUE(corrector.calls.empty());
    EXPECT_EQ(storedBits(3), kNoValueBits);
}

TEST_F(Correction, IsNotAskedForNoValue) {
    calibrate(1);
    write(1, 32767.0);
    EXPECT_TRUE(corrector.calls.empty());
}

TEST_F(Correction, IsNotAskedForRefusedWrites) {
    calibrate(1);
    raw.put<std::uint8_t>(place::blocked(1), 1);
    write(1, 6.0);
    EXPECT_TRUE(corrector.calls.empty());
}

TEST_F(Correction, IsNotAskedForIntegersAndTimes) {
    calibrate(269);
    calibrate(146);
    calibrate(204);
    write(269, 3.0);
    write(146, 45983.0);
    write(204, 0.5);
    EXPECT_TRUE(corrector.calls.empty());
}

TEST_F(Correction, OfANaNIsAsked) {
    calibrate(1);
    write(1, kNaN);
    expectOneCall(1, kNaN);
}

TEST_F(Correction, ComesBeforeTheDerivedChannels) {
    raw.put<std::uint8_t>(place::flag(33), 1);
    write(24, 10.0); // mast angle
    calibrate(2);
    write(2, 30.0);
    expectOneCall(2, 30.0); // not yet less the mast angle
    EXPECT_EQ(stored(2), 20.5);

    calibrate(282);
    write(283, 1.0);
    write(282, 5.0);
    expectOneCall(282, 5.0);
    EXPECT_EQ(stored(284), 4.5);

    raw.put<std::uint8_t>(place::flag(27), 1);
    write(13, 10.0, 0, 1000);
    calibrate(13);
    write(13, 12.0, 0, 1000 + 10'000'000);
    expectOneCall(13, 12.0);
    EXPECT_EQ(stored(32), 2.5);
}

TEST_F(Correction, IsNotAskedForDerivedValues) {
    for (ChannelIndex channel : {ChannelIndex{284}, ChannelIndex{32}}) calibrate(channel);
    raw.put<std::uint8_t>(place::flag(27), 1);
    write(283, 1.0);
    write(282, 5.0);
    write(13, 10.0, 0, 1000);
    write(13, 12.0, 0, 1000 + 10'000'000);
    EXPECT_TRUE(corrector.calls.empty());
    EXPECT_EQ(stored(284), 4.0);
    EXPECT_EQ(stored(32), 2.0);
}

TEST_F(Correction, ToNoValueClearsAndDerivesNothing) {
    calibrate(282);
    write(283, 1.0);
    corrector.offset = 32767.0;
    EXPECT_TRUE(write(282, 0.0));
    EXPECT_EQ(storedBits(282), kNoValueBits);
    EXPECT_EQ(storedBits(284), kNoValueBits);
    EXPECT_EQ(raw.get<std::uint8_t>(place::written(282)), 0);
}

TEST_F(Correction, LeavesTheRecordsHeader) {
    calibrate(1);
    store.store(1, Record{0x4200, bitsOf(6.0)}, 0, kStampNow);
    EXPECT_EQ(storedHeader(1), 0x4200U);
    EXPECT_EQ(stored(1), 6.5);
}

class WithoutACorrector : public StoreTest {};

TEST_F(WithoutACorrector, AValueOfACalibratedChannelIsStoredAsWritten) {
    raw.put<std::uint8_t>(place::calibrate(1), 1);
    EXPECT_TRUE(write(1, 6.0));
    EXPECT_EQ(stored(1), 6.0);
}

} // namespace
} // namespace tallowmere::test
