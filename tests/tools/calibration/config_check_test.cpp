#include "tests/tools/calibration/calibration_command_fixture.hpp"

namespace tallowmere::test {
namespace {

class ConfigCheck : public CalibrationCommandTest {
  protected:
    std::string boats(const std::string& elements) {
        putConfig(u"boats.xml", "<boats>\n" + elements + "\n</boats>\n");
        return check();
    }
    std::string channels(const std::string& elements) {
        putConfig(u"channels.xml", "<channels>\n" + elements + "\n</channels>\n");
        return check();
    }
    std::string alternate(const std::string& text) {
        putConfig(u"alternate.csv", text);
        return check();
    }
};

TEST_F(ConfigCheck, CleanFilesAreNoProblem) {
    EXPECT_EQ(boats(R"(<boat id="3" name="Falcon" mmsi="235012345" r="255" g="0" b="0"/><BOAT ID='4'/>)"), "");
    EXPECT_EQ(channels(R"(<channel id="5" log="FALSE" prec="1"/><channel id="180" type="3" prec="2" user="Keel"/>)"),
              "");
    EXPECT_EQ(
        alternate("! comment\r\n0,1,2,3,4,5,6,7,8,9\r\n\n1 1 2 3 4 5 6 7 8 0\n2\t1\t2\t3\t4\t5\t6\t7\t8\t32767\n"), "");
}

TEST_F(ConfigCheck, MalformedDocumentsAreToldWithTheirLine) {
    putConfig(u"boats.xml", "<boats>\n<boat id=\"1\"/>\n<boat id=2/>\n</boats>\n");
    EXPECT_EQ(check(), "boats.xml:3: is malformed here; what stands before it is read, the rest is not\n");
}

TEST_F(ConfigCheck, AnotherRootIsTold) {
    putConfig(u"boats.xml", "<?xml version='1.0'?>\n<ships><boat id=\"1\"/></ships>");
    EXPECT_EQ(check(), "boats.xml:2: its root is \"ships\", not \"boats\"; nothing is read\n");
}

TEST_F(ConfigCheck, UnknownElementsAndAttributesAreTold) {
    EXPECT_EQ(boats("<ship/>\n<boat id='1' colour='red' name=''/>"),
              "boats.xml:2: unknown element \"ship\"; it is ignored\n"
              "boats.xml:3: unknown attribute \"colour\"; it is ignored\n"
              "boats.xml:3: \"name\" is empty; it is ignored\n");
}

TEST_F(ConfigCheck, BoatNumbersAreJudged) {
    EXPECT_EQ(boats("<boat id='100'/>\n<boat id='-1'/>\n<boat id='3x'/>\n<boat id='3'/>\n<boat name='a'/>"),
              "boats.xml:2: there is no boat 100, only 0 to 99; the element changes nothing\n"
              "boats.xml:3: there is no boat -1, only 0 to 99; the element changes nothing\n"
              "boats.xml:4: id \"3x\" is no whole number of 32 bits; it is read as 3\n"
              "boats.xml:5: boat 3 was there already on line 4; what both give, this one decides; the colour always\n"
              "boats.xml:6: \"name\" stands before the id; it is ignored\n"
              "boats.xml:6: has no id; the element changes nothing\n");
}

TEST_F(ConfigCheck, BoatValuesAreJudged) {
    EXPECT_EQ(boats("<boat id='1' mmsi='12345' r='256' g='red' b='-1'/>\n<boat id='2' mmsi='none' "
                    "name='A name of thirty-two characters!'/>"),
              "boats.xml:2: mmsi \"12345\" has not nine digits; it is read as 12345\n"
              "boats.xml:2: colour component r is 256, not 0 to 255; it is taken as 0\n"
              "boats.xml:2: g \"red\" is no whole number of 32 bits; it is read as 0\n"
              "boats.xml:2: colour component b is -1, not 0 to 255; it is taken as 255\n"
              "boats.xml:3: mmsi \"none\" has not nine digits; it is ignored\n"
              "boats.xml:3: name \"A name of thirty-two characters!\" has more than 31 characters; it is cut to "
              "\"A name of thirty-two characters\"\n");
}

TEST_F(ConfigCheck, ChannelAttributesAreJudged) {
    EXPECT_EQ(
        channels("<channel id='0'/>\n<channel id='414'/>\n<channel prec='1' id='5'/>\n<channel id='1' log='no' "
                 "prec='255'/>\n"
                 "<channel id='120' prec='1'/>\n<channel id='204' prec='1'/>\n<channel id='2' type='3' user='x'/>\n"
                 "<channel id='180' type='23' user='Sixteen letters!'/>\n<channel id='181' type='1' prec='2'/>"),
        "channels.xml:2: there are no settings of channel 0, only of 1 to 413; the element changes nothing\n"
        "channels.xml:3: there are no settings of channel 414, only of 1 to 413; the element changes nothing\n"
        "channels.xml:4: \"prec\" stands before the id; it is ignored\n"
        "channels.xml:5: log \"no\" is neither true nor false; it counts as true\n"
        "channels.xml:5: prec 255 is not 0 to 254; it is ignored\n"
        "channels.xml:6: channel 120 (Alt 3) is shown as what it stands for; prec is ignored\n"
        "channels.xml:7: channel 204 (TmToGun) is a time span, which has a format of its own; prec is ignored\n"
        "channels.xml:8: channel 2 (AWA) is no user channel (172 to 203); type is ignored\n"
        "channels.xml:8: channel 2 (AWA) is no user channel (172 to 203); user is ignored\n"
        "channels.xml:9: type 23 is no unit class (0 to 22); the channel is treated as a plain number\n"
        "channels.xml:9: user \"Sixteen letters!\" has more than 15 characters; the short name is cut to "
        "\"Sixteen letters\"\n"
        "channels.xml:10: channel 181 (User 9) is a date and time, which has a format of its own; prec is ignored\n");
}

TEST_F(ConfigCheck, TypesOfChannel203AreJudgedByWhatTheyDo) {
    EXPECT_EQ(channels("<channel id='202' type='1'/>"), "");
    for (const char* type : {"0", "11"})
        EXPECT_EQ(channels(std::string("<channel id='203' type='") + type + "'/>"), "") << type;
    const std::string is = "channels.xml:2: channel 203 (User 31) ";
    const std::string stored = ", and can't convert one; every number written to it is stored as none\n";
    EXPECT_EQ(channels("<channel id='203' type='1'/>"), is + "would keep a date and time" + stored);
    EXPECT_EQ(channels("<channel id='203' type='2'/>"), is + "would keep a time span" + stored);
    for (const char* type : {"3", "6", "8", "22"})
        EXPECT_EQ(channels(std::string("<channel id='203' type='") + type + "'/>"),
                  is + "stays a plain number; type changes nothing\n")
            << type;
    const std::string noClass = "channels.xml:2: type 23 is no unit class (0 to 22); ";
    EXPECT_EQ(channels("<channel id='203' type='23'/>"), noClass + "the channel is treated as a plain number\n");
}

TEST_F(ConfigCheck, DampingIsJudgedByTheCatalogue) {
    const auto* const undampable = std::ranges::find(kCatalogue, 0, &ChannelDef::dampable);
    const auto* const dampable = std::ranges::find(kCatalogue, 1, &ChannelDef::dampable);
    ASSERT_NE(dampable, kCatalogue.end());
    const auto* const other = undampable->index == 0 ? std::find_if(kCatalogue.begin() + 1, kCatalogue.end(),
                                                                    [](const auto& row) { return row.dampable == 0; })
                                                     : undampable;
    EXPECT_THAT(channels("<channel id='" + std::to_string(other->index) + "' damp='3'/>"),
                ::testing::HasSubstr("can't be damped; damp is ignored\n"));
    EXPECT_EQ(channels("<channel id='" + std::to_string(dampable->index) + "' damp='65537'/>"),
              "channels.xml:2: damp 65537 is not 0 to 65535; it is taken as 1\n");
}

TEST_F(ConfigCheck, AlternateLinesAreJudged) {
    EXPECT_EQ(
        alternate("0,1,2,3,4,5,6,7\n10,1,2,3,4,5,6,7,8,9\nrow,1\n3,10,11,12,13,14,15,16,17\n"
                  "4,414,-5,3,4,5,6,65541,8,9 comment\n4,1,2,3,4,5,6,7,8,9\n"),
        "alternate.csv:1: has 7 channel numbers, and at least 8 are needed; the line is skipped\n"
        "alternate.csv:2: there is no row 10, only 0 to 9; the line is skipped\n"
        "alternate.csv:3: \"row,1\" begins with no row number; the line is skipped\n"
        "alternate.csv:4: has eight channel numbers; column 8 takes 9 as line 2 left it\n"
        "alternate.csv:5: channel 414 of column 0 is not 1 to 413; the cell stays as it was\n"
        "alternate.csv:5: channel -5 of column 1 is not 1 to 413; the cell stays as it was\n"
        "alternate.csv:5: channel 65541 of column 6 does not fit 16 bits; it is read as 5\n"
        "alternate.csv:5: \"comment\" follows the channel numbers; it is ignored\n"
        "alternate.csv:6: row 4 was there already on line 5; its channels replace those, and other cells keep them\n");
}

TEST_F(ConfigCheck, AByteOrderMarkInFrontOfARowIsTold) {
    EXPECT_EQ(alternate("\xEF\xBB\xBF"
                        "0,1,2,3,4,5,6,7,8,9\n"),
              "alternate.csv:1: a byte order mark stands before the row number; the line is skipped\n");
}

} // namespace
} // namespace tallowmere::test
