// What each sentence writes, and in which unit.
#include "tests/tools/feed/fake_sink.hpp"

#include <gmock/gmock.h>

#include <limits>

namespace tallowmere::feed {
namespace {

using testing::DoubleNear;
using testing::Optional;

class Sentences : public FeedTest {
  protected:
    void expect(ChannelIndex channel, double expected) const {
        EXPECT_THAT(value(channel), Optional(DoubleNear(expected, 1e-9))) << "channel " << channel;
    }
    void expectNothing() const { EXPECT_TRUE(sink.values.empty()); }
    void expectCount(std::size_t count) const { EXPECT_EQ(sink.values.size(), count); }
};

TEST_F(Sentences, RmcGivesTimePositionCourseSpeedAndVariation) {
    feedBody("ECRMC,194310,A,3748.784,N,12226.831,W,8.0,316.0,140708,015.0,E,A");
    expect(ZAN_GPS_TIME, 39643.0 + 70990.0 / 86400.0);
    expect(ZAN_LAT, 37.0 + 48.784 / 60.0);
    expect(ZAN_LON, -122.0 - 26.831 / 60.0);
    expect(ZAN_SOG, 8.0);
    expect(ZAN_COG, 316.0);
    expect(ZAN_MAGVAR, 15.0);
    expectCount(6);
}

TEST_F(Sentences, RmcWestVariationIsNegative) {
    feedBody("GPRMC,194310,A,,,,,,,,015.0,W,A");
    expect(ZAN_MAGVAR, -15.0);
    expectCount(1);
}

TEST_F(Sentences, RmcWithoutVariationAndModeIsUsed) {
    feedBody("GPRMC,190315.000,A,3503.8851,N,07658.0729,W,0.27,27.56,120816");
    expect(ZAN_SOG, 0.27);
    expectCount(5);
}

TEST_F(Sentences, InvalidSentencesWriteNothingAndAreCounted) {
    const char* const bodies[] = {
        "GPRMC,194310,V,3748.784,N,12226.831,W,8.0,316.0,140708,015.0,E,A",
        "GPRMC,194310,A,3748.784,N,12226.831,W,8.0,316.0,140708,015.0,E,N",
        "GPGGA,194310,3748.784,N,12226.831,W,0,06,2.0,-18.0,M,0.0,M,0.0,",
        "GPGGA,194310,3748.784,N,12226.831,W,,06,2.0,-18.0,M,0.0,M,0.0,",
        "GPGLL,3748.784,N,12226.831,W,194310,V,A",
        "GPGLL,3748.784,N,12226.831,W,194310,A,N",
        "GPVTG,316.0,T,301.0,M,7.7,N,14.3,K,N",
        "IIMWV,338,R,13.41,N,V",
        "TIROT,30.0,V",
        "IIRSA,5.0,V,6.0,V",
    };
    for (const char* const body : bodies) feedBody(body);
    expectNothing();
    EXPECT_EQ(feed.counts().invalid, std::size(bodies));
    EXPECT_EQ(feed.counts().withoutVariation, 0U);
}

TEST_F(Sentences, GgaGivesPositionAndQualityOfTheFix) {
    feedBody("GPGGA,190333.000,3503.8853,N,07658.0704,W,2,08,1.0,-5.1,M,-34.8,M,1.3,0120");
    expect(ZAN_LAT, 35.0 + 3.8853 / 60.0);
    expect(ZAN_LON, -76.0 - 58.0704 / 60.0);
    expect(ZAN_GPSMETHOD, 2.0);
    expect(ZAN_GPSNUM, 8.0);
    expect(ZAN_HDOP, 1.0);
    expect(ZAN_ALTITUDE, -5.1);
    expect(ZAN_GEOSEP, -34.8);
    expect(ZAN_GPSAGE, 1.3);
    expect(ZAN_DIFFSTN, 120.0);
    expectCount(9);
}

TEST_F(Sentences, OfOurOwnGiveTheStart) {
    feedBody("PTLML,3928.1234,N,00237.5000,W,3928.2468,S,00237.7500,E,225.5");
    expect(ZAN_PORT_LAT, 39.0 + 28.1234 / 60.0);
    expect(ZAN_PORT_LON, -2.0 - 37.5 / 60.0);
    expect(ZAN_STBD_LAT, -39.0 - 28.2468 / 60.0);
    expect(ZAN_STBD_LON, 2.0 + 37.75 / 60.0);
    expect(ZAN_LNSQWIND, 225.5);
    expectCount(5);
    feedBody("PTLMT,-90.0,45.5,-135.5,185.2,203.7,-18.5,-7.5,-41.8");
    expect(ZAN_TMTOGUN, -90.0 / 86400.0);
    expect(ZAN_TMTOLN, 45.5 / 86400.0);
    expect(ZAN_BURN, -135.5 / 86400.0);
    expect(ZAN_BELOWLN, 0.1);
    expect(ZAN_DISTTOLN, 203.7 / 1852.0);
    expect(ZAN_GUNBLWLN, -18.5 / 1852.0);
    expect(ZAN_BIAS_ANG, -7.5);
    expect(ZAN_BIASL, -41.8 / 1852.0);
    expectCount(13);
}

TEST_F(Sentences, EmptyFieldsOfTheStartWriteNothing) {
    feedBody("PTLMT,12.0,,,,,,x,1e5");
    expect(ZAN_TMTOGUN, 12.0 / 86400.0);
    expectCount(1);
    feedBody("PTLML,3928.1234,N,,,,,,,");
    expectCount(1);
}

TEST_F(Sentences, OtherMakersSentencesAreUnknown) {
    for (const char* const body : {"PTLMX,1", "PTLM,1", "XPTLMT,1", "RMC,1"}) feedBody(body);
    expectNothing();
    EXPECT_EQ(feed.counts().unknown.size(), 4U);
}

TEST_F(Sentences, GllGivesPositionEvenWithoutStatusAndMode) {
    feedBody("GPGLL,6005.071,N,02332.346,E");
    expect(ZAN_LAT, 60.0 + 5.071 / 60.0);
    expect(ZAN_LON, 23.0 + 32.346 / 60.0);
    expectCount(2);
}

TEST_F(Sentences, VtgModeAfterEmptyFieldsIsValid) {
    feedBody("IIVTG,224.44,T,224.44,M,5.81,N,,,D");
    expect(ZAN_COG, 224.44);
    expect(ZAN_SOG, 5.81);
    expectCount(2);
}

TEST_F(Sentences, VtgFallsBackToKilometresAndMagneticCourse) {
    sink.variation = 15.0;
    feedBody("IIVTG,,T,301.0,M,,N,18.52,K,A");
    expect(ZAN_COG, 316.0);
    expect(ZAN_SOG, 10.0);
}

TEST_F(Sentences, ZdaGivesTheTimeOnlyWithAWholeDate) {
    feedBody("GPZDA,095559,,,,00,");
    feedBody("GPZDA,095559,14,,2008,00,");
    feedBody("GPZDA,,14,07,2008,00,");
    feedBody("GPZDA,095559,31,02,2008,00,");
    expectNothing();
    feedBody("ECZDA,194310,14,07,2008,,");
    expect(ZAN_GPS_TIME, 39643.0 + 70990.0 / 86400.0);
    expectCount(1);
}

TEST_F(Sentences, HdgIsCorrectedByDeviationAndVariation) {
    feedBody("HCHDG,350.0,4.0,W,20.0,E");
    expect(ZAN_MAGVAR, 20.0);
    expect(ZAN_HDG, 6.0);
    feedBody("HCHDG,358.0,3.0,E,10.0,W");
    expect(ZAN_MAGVAR, -10.0);
    expect(ZAN_HDG, 351.0);
    feedBody("HCHDG,5.0,,,,");
    expect(ZAN_HDG, 355.0);
}

TEST_F(Sentences, MagneticHeadingWithoutVariationIsCountedNotWritten) {
    feedBody("IIHDM,302,M");
    feedBody("HCHDG,302.0,,,,");
    feedBody("IIVHW,,T,302,M,,N,,K");
    feedBody("IIMWD,,T,302,M,,N,,M");
    expectNothing();
    EXPECT_EQ(feed.counts().withoutVariation, 4U);
}

TEST_F(Sentences, MagneticHeadingTakesTheVariationOfTheSection) {
    sink.variation = -20.0;
    feedBody("IIHDM,5,M");
    expect(ZAN_HDG, 345.0);
}

TEST_F(Sentences, VariationLearntFromASentenceGoesBeforeTheSections) {
    sink.variation = -20.0;
    feedBody("GPRMC,194310,A,,,,,,,,015.0,E,A");
    feedBody("IIHDM,350,M");
    expect(ZAN_HDG, 5.0);
}

TEST_F(Sentences, ImpossibleVariationIsNotLearnt) {
    feedBody("GPRMC,194310,A,,,,,,,,181.0,E,A");
    feedBody("IIHDM,350,M");
    expectNothing();
    sink.variation = std::numeric_limits<double>::quiet_NaN();
    feedBody("IIHDM,350,M");
    expectNothing();
}

TEST_F(Sentences, HdtIsTrueAlready) {
    feedBody("IIHDT,123.4,T");
    expect(ZAN_HDG, 123.4);
}

TEST_F(Sentences, VhwPrefersTrueHeadingAndKnots) {
    feedBody("IIVHW,310.0,T,302,M,07.31,N,99.9,K");
    expect(ZAN_HDG, 310.0);
    expect(ZAN_BSP, 7.31);
    feedBody("IIVHW,,T,,M,,N,18.52,K");
    expect(ZAN_BSP, 10.0);
    expectCount(2);
}

TEST_F(Sentences, RotIsPerSecond) {
    feedBody("TIROT,-30.0,A");
    expect(ZAN_ROT, -0.5);
}

TEST_F(Sentences, RsaOneSensorIsTheRudderAndTwoAreTheRudders) {
    feedBody("IIRSA,-5.5,A,,V");
    expect(ZAN_RUDDER, -5.5);
    expectCount(1);
    sink.values.clear();
    feedBody("IIRSA,,V,4.5,A");
    expect(ZAN_RUDDER, 4.5);
    expectCount(1);
    sink.values.clear();
    feedBody("IIRSA,1.0,A,2.0,A");
    expect(ZAN_RUDDERS, 1.0);
    expect(ZAN_RUDDERP, 2.0);
    expectCount(2);
}

TEST_F(Sentences, MwvApparentAnglesAreSignedToStarboard) {
    feedBody("IIMWV,338,R,13.41,N,A");
    expect(ZAN_AWA, -22.0);
    expect(ZAN_AWS, 13.41);
    feedBody("IIMWV,180.0,R,1.0,N,A");
    expect(ZAN_AWA, 180.0);
    feedBody("IIMWV,360.0,R,1.0,N,A");
    expect(ZAN_AWA, 0.0);
    expectCount(2);
}

TEST_F(Sentences, MwvTrueGoesToTheTrueWind) {
    feedBody("IIMWV,45,T,8.16,N,A");
    expect(ZAN_TWA, 45.0);
    expect(ZAN_TWS, 8.16);
    expectCount(2);
}

TEST_F(Sentences, MwvKnowsFourUnitsAndNoOther) {
    feedBody("IIMWV,,R,10,N,A");
    expect(ZAN_AWS, 10.0);
    feedBody("IIMWV,,R,18.52,K,A");
    expect(ZAN_AWS, 10.0);
    feedBody("IIMWV,,R,10,M,A");
    expect(ZAN_AWS, 10.0 * 3600.0 / 1852.0);
    feedBody("IIMWV,,R,10,S,A");
    expect(ZAN_AWS, 10.0 * 1.609344 / 1.852);
    sink.values.clear();
    feedBody("IIMWV,,R,10,X,A");
    feedBody("IIMWV,,R,10,,A");
    expectNothing();
}

TEST_F(Sentences, MwvWithoutStatusIsUsed) {
    feedBody("02MWV,327.6,R,1.89,N");
    expect(ZAN_AWA, -32.4);
    expect(ZAN_AWS, 1.89);
}

TEST_F(Sentences, MwvWithoutReferenceWritesNothing) {
    feedBody("IIMWV,338,,13.41,N,A");
    feedBody("IIMWV,338,X,13.41,N,A");
    expectNothing();
}

TEST_F(Sentences, VwrIsApparentAndVwtTrue) {
    feedBody("IIVWR,077,L,20.5,N,10.5,M,038.0,K");
    expect(ZAN_AWA, -77.0);
    expect(ZAN_AWS, 20.5);
    feedBody("IIVWT,039,R,,N,10.0,M,,");
    expect(ZAN_TWA, 39.0);
    expect(ZAN_TWS, 10.0 * 3600.0 / 1852.0);
    expectCount(4);
}

TEST_F(Sentences, VwrAngleWithoutSideIsNone) {
    feedBody("IIVWR,077,,20.5,N,,M,,K");
    EXPECT_FALSE(value(ZAN_AWA));
    expect(ZAN_AWS, 20.5);
}

TEST_F(Sentences, MwdGivesDirectionAndSpeed) {
    feedBody("WIMWD,282.0,T,267.0,M,18.4,N,9.5,M");
    expect(ZAN_TWD, 282.0);
    expect(ZAN_TWS, 18.4);
    feedBody("IIMWD,,,,,07.60,N,03.91,M");
    expect(ZAN_TWD, 282.0);
    expect(ZAN_TWS, 7.6);
    sink.variation = 15.0;
    feedBody("WIMWD,,T,350.0,M,,N,10.0,M");
    expect(ZAN_TWD, 5.0);
    expect(ZAN_TWS, 10.0 * 3600.0 / 1852.0);
}

TEST_F(Sentences, DepthComesInMetresFirstThenFeetThenFathoms) {
    feedBody("IIDBT,070.0,f,021.3,M,011.6,F");
    expect(ZAN_DEPTH, 21.3);
    feedBody("IIDBT,100.0,f,,M,,F");
    expect(ZAN_DEPTH, 30.48);
    feedBody("IIDBS,,f,,M,10.0,F");
    expect(ZAN_DEPTH, 18.288);
    expectCount(1);
}

TEST_F(Sentences, DptAddsItsOffset) {
    feedBody("SDDPT,2.68,0.40,100.0");
    expect(ZAN_DEPTH, 3.08);
    feedBody("SDDPT,2.68,-0.68,");
    expect(ZAN_DEPTH, 2.0);
    feedBody("SDDPT,2.68");
    expect(ZAN_DEPTH, 2.68);
    feedBody("SDDPT,,0.5,");
    expect(ZAN_DEPTH, 2.68);
}

TEST_F(Sentences, MtwIsTheSeaTemperature) {
    feedBody("IIMTW,016.5,C");
    expect(ZAN_SEATEMP, 16.5);
    feedBody("IIMTW,68.0,F");
    expect(ZAN_SEATEMP, 20.0);
}

TEST_F(Sentences, VlwGivesTheLogs) {
    feedBody("VWVLW,4512.3,N,12.75,N");
    expect(ZAN_LOG_BSP, 4512.3);
    expect(ZAN_TRIPLOG, 12.75);
    expectCount(2);
    feedBody("VWVLW,,N,,N,4600.1,N,13.0,N");
    expect(ZAN_LOG_SOG, 4600.1);
    expectCount(3);
}

TEST_F(Sentences, MdaGivesAirAndWind) {
    feedBody("WIMDA,29.9212,I,1.0132,B,17.4,C,16.1,C,72.5,8.1,12.4,C,282.0,T,267.0,M,18.4,N,9.5,M");
    expect(ZAN_BARO, 1013.2);
    expect(ZAN_AIRTEMP, 17.4);
    expect(ZAN_SEATEMP, 16.1);
    expect(ZAN_RH, 72.5);
    expect(ZAN_DEWPT, 12.4);
    expect(ZAN_TWD, 282.0);
    expect(ZAN_TWS, 18.4);
    expectCount(7);
    feedBody("WIMDA,30.0,I,,B,,C,,C,,,,C,,T,,M,,N,,M");
    expect(ZAN_BARO, 1015.9167);
}

TEST_F(Sentences, XdrGivesHeelTrimAndPressureByName) {
    feedBody("IIXDR,A,-21.5,D,HEEL,A,2.5,D,Pitch#1,P,1.0132,B,Barometer,C,17.0,C,TempAir");
    expect(ZAN_HEEL, -21.5);
    expect(ZAN_TRIM, 2.5);
    expect(ZAN_BARO, 1013.2);
    expectCount(3);
    feedBody("YXXDR,A,7.0,D,roll,A,-1.0,D,PTCH,P,101300,P,PRESS0");
    expect(ZAN_HEEL, 7.0);
    expect(ZAN_TRIM, -1.0);
    expect(ZAN_BARO, 1013.0);
}

TEST_F(Sentences, XdrOfOtherTransducersWritesNothing) {
    feedBody("IIXDR,P,1.01,B,ENGINE,A,5.0,D,RUDDER,A,5.0,R,HEEL,A,,D,HEEL,A,5.0,D,,P,1.01,B,");
    feedBody("IIXDR");
    feedBody("IIXDR,A");
    feedBody("IIXDR,A,1");
    feedBody("IIXDR,A,1,D");
    expectNothing();
}

TEST_F(Sentences, EmptyFieldsWriteNothing) {
    for (const char* const type : {"RMC", "GGA", "GLL", "VTG", "ZDA", "VHW", "HDG", "HDM", "HDT", "MWV", "VWR",
                                   "VWT", "MWD", "DBT", "DPT", "DBS", "MTW", "MDA", "XDR", "ROT", "RSA", "VLW"}) {
        feedBody(std::string("II") + type);
        feedBody(std::string("II") + type + ",");
        feedBody(std::string("II") + type + std::string(40, ','));
        EXPECT_EQ(feed.counts().used.at(type), 3U) << type;
    }
    expectNothing();
    EXPECT_EQ(feed.counts().implausible + feed.counts().refused + feed.counts().withoutVariation, 0U);
}

TEST_F(Sentences, ValueThatCanNotBeLeavesTheGoodOne) {
    feedBody("IIDBT,,f,5.0,M,,F");
    feedBody("IIDBT,,f,-5.0,M,,F");
    feedBody("IIDBT,,f,32767,M,,F");
    feedBody("IIDBT,,f,99999999999999999999,M,,F");
    expect(ZAN_DEPTH, 5.0);
    EXPECT_EQ(feed.counts().implausible, 3U);
    EXPECT_EQ(feed.counts().written, 1U);
}

TEST_F(Sentences, RefusedValuesAreCounted) {
    sink.accepts = false;
    feedBody("IIMTW,016.5,C");
    EXPECT_EQ(feed.counts().refused, 1U);
    EXPECT_EQ(feed.counts().written, 0U);
}

TEST_F(Sentences, TalkerDoesNotMatter) {
    feedBody("02HDT,10.0,T");
    expect(ZAN_HDG, 10.0);
    feedBody("ZZHDT,20.0,T");
    expect(ZAN_HDG, 20.0);
}

} // namespace
} // namespace tallowmere::feed
