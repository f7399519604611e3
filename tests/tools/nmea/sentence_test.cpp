#include "tools/nmea/sentence.hpp"

#include <gtest/gtest.h>

#include <string>

namespace tallowmere::nmea {
namespace {

TEST(Sentence, StandardAddressIsTalkerAndType) {
    const Sentence sentence('$', "GPRMC,190315.000,A,,");
    EXPECT_EQ(sentence.talker(), "GP");
    EXPECT_EQ(sentence.type(), "RMC");
    EXPECT_TRUE(sentence.isStandard());
    ASSERT_EQ(sentence.fieldCount(), 4U);
    EXPECT_EQ(sentence.field(0), "190315.000");
    EXPECT_EQ(sentence.field(1), "A");
    EXPECT_EQ(sentence.field(2), "");
    EXPECT_EQ(sentence.field(3), "");
    EXPECT_EQ(sentence.field(4), "");
    EXPECT_EQ(sentence.field(100'000), "");
}

TEST(Sentence, TalkerMayBeOfDigits) {
    const Sentence sentence('$', "02MWV,327.6,R,1.89,N");
    EXPECT_EQ(sentence.talker(), "02");
    EXPECT_EQ(sentence.type(), "MWV");
}

TEST(Sentence, MakersOwnSentenceIsNamedByItsWholeAddress) {
    const Sentence five('$', "PGRMT,x");
    EXPECT_FALSE(five.isStandard());
    EXPECT_EQ(five.type(), "PGRMT");
    EXPECT_EQ(Sentence('$', "PSMDCN,2").type(), "PSMDCN");
}

TEST(Sentence, StrangeAddressIsNamedAsItIs) {
    for (const std::string_view address : {"", "RMC", "GPRMCX", "gprmc", "GP1MC", "GP MC"}) {
        const Sentence sentence('$', address);
        EXPECT_FALSE(sentence.isStandard()) << address;
        EXPECT_EQ(sentence.type(), address);
        EXPECT_EQ(sentence.fieldCount(), 0U);
    }
}

TEST(Sentence, BlanksAroundAFieldAreTakenOff) {
    const Sentence sentence('$', "GPXXX,  12.5 ,   ,a b");
    EXPECT_EQ(sentence.field(0), "12.5");
    EXPECT_EQ(sentence.field(1), "");
    EXPECT_EQ(sentence.field(2), "a b");
}

TEST(Sentence, FieldsBeyondTheLimitArePassedOver) {
    const Sentence sentence('$', "GPXXX" + std::string(1000, ','));
    EXPECT_EQ(sentence.fieldCount(), Sentence::kMostFields);
}

} // namespace
} // namespace tallowmere::nmea
