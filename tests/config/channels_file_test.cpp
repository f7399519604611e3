#include "core/config/channels_file.hpp"
#include "tests/support/new_section.hpp"

namespace tallowmere::test {
namespace {

class ChannelsFile : public NewSection {
  protected:
    void read(const std::string& elements) { readDocument("<channels>" + elements + "</channels>"); }
    void readDocument(const std::string& document) {
        machine.addFile(u"C:\\ProgramData\\Tallowmere\\config\\channels.xml", document);
        readChannels(context);
    }
    const ChannelSetting& setting(std::size_t channel) { return area->settings[channel]; }
    /// The settings as they are when no file changes them.
    std::unique_ptr<SharedArea> resetArea() {
        auto other = makeArea();
        for (std::size_t channel = 1; channel < kChannelCount; ++channel)
            other->settings[channel].log = kCatalogue[channel].logDefault;
        return other;
    }
    void expectAllReset() { EXPECT_EQ(std::memcmp(area->settings, resetArea()->settings, sizeof area->settings), 0); }
};

TEST_F(ChannelsFile, WithoutFileSettingsAreTheCatalogues) {
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        area->settings[channel].log = 9;
        area->settings[channel].damping = 9;
        area->settings[channel].precision = 9;
    }
    readChannels(context);
    for (std::size_t channel = 1; channel < kChannelCount; ++channel) {
        EXPECT_EQ(setting(channel).log, kCatalogue[channel].logDefault) << channel;
        EXPECT_EQ(setting(channel).damping, 0) << channel;
        EXPECT_EQ(setting(channel).precision, kCatalogue[channel].precision) << channel;
    }
    EXPECT_EQ(setting(0).log, 9); // the clock channel is left alone
    EXPECT_EQ(setting(0).damping, 9);
    EXPECT_EQ(setting(0).precision, 9);
}

TEST_F(ChannelsFile, WithoutSectionNothingIsAsked) {
    readChannels(withoutSection);
    EXPECT_TRUE(machine.trace.empty());
}

TEST_F(ChannelsFile, IdsWithoutAChannelChangeNothing) {
    readChannels(context);
    const auto before = std::make_unique<SharedArea>(*area);
    read(R"(<channel id="0" log="false" prec="5" damp="3"/><channel id="414" log="false" prec="5"/>
            <channel id="-1" log="false"/><channel id="99999999999" log="false"/><channel id="x" prec="5"/>)");
    EXPECT_TRUE(sameBytes(*before));
}

TEST_F(ChannelsFile, AttributesBeforeIdApplyToNoChannel) {
    read(R"(<channel log="false" prec="5" id="1"/>)");
    expectAllReset();
}

TEST_F(ChannelsFile, LogIsClearedByFalseInAnyCase) {
    read(R"(<channel id="5" log="FALSE"/><channel id="6" log="False"/><channel id="7" log="false"/>)");
    for (const std::size_t channel : {5u, 6u, 7u}) EXPECT_EQ(setting(channel).log, 0) << channel;
}

TEST_F(ChannelsFile, LogIsSetByAnyOtherText) {
    read(R"(<channel id="8" log="no"/><channel id="33" log="0"/><channel id="34" log=" false"/>)");
    for (const std::size_t channel : {8u, 33u, 34u}) {
        ASSERT_EQ(kCatalogue[channel].logDefault, 0);
        EXPECT_EQ(setting(channel).log, 1) << channel;
    }
}

TEST_F(ChannelsFile, DampingIsTakenWhereTheCatalogueAllowsIt) {
    ASSERT_EQ(kCatalogue[1].dampable, 1);
    ASSERT_EQ(kCatalogue[33].dampable, 0);
    read(R"(<channel id="1" damp="12"/><channel id="33" damp="12"/><channel id="2" damp="65537"/>
            <channel id="3" damp="-1"/><channel id="413" prec="1"/>)");
    EXPECT_EQ(setting(1).damping, 12);
    EXPECT_EQ(setting(33).damping, 0);
    EXPECT_EQ(setting(2).damping, 1);
    EXPECT_EQ(setting(3).damping, 65535);
    for (std::size_t channel = 4; channel < kChannelCount; ++channel) EXPECT_EQ(setting(channel).damping, 0) << channel;
}

TEST_F(ChannelsFile, PrecisionIsTakenFrom0To254) {
    read(R"(<channel id="1" prec="0"/><channel id="2" prec="254"/><channel id="413" prec="7"/>)");
    EXPECT_EQ(setting(1).precision, 0);
    EXPECT_EQ(setting(2).precision, 254);
    EXPECT_EQ(setting(413).precision, 7);
    read(R"(<channel id="1" prec="255"/><channel id="2" prec="-1"/><channel id="3" prec="99999999999"/>)");
    expectAllReset();
}

TEST_F(ChannelsFile, PrecisionOfAlternatingChannelsIsIgnored) {
    std::string elements;
    for (int channel = 117; channel <= 126; ++channel)
        elements += "<channel id='" + std::to_string(channel) + "' prec='3'/>";
    read(elements + "<channel id='116' prec='3'/><channel id='128' prec='3'/>");
    for (std::size_t channel = 117; channel <= 126; ++channel)
        EXPECT_EQ(setting(channel).precision, kCatalogue[channel].precision) << channel;
    EXPECT_EQ(setting(116).precision, 3);
    EXPECT_EQ(setting(128).precision, 3);
}

TEST_F(ChannelsFile, PrecisionIsRefusedByTheClassesWithAFormatOfTheirOwn) {
    for (std::size_t channel = 1; channel < kChannelCount; ++channel) {
        const auto code = kCatalogue[channel].unitClassCode;
        const bool refused = code == 1 || code == 2 || code == 8 || code == 9 || code == 11 || isAlternating(channel);
        read("<channel id='" + std::to_string(channel) + "' prec='77'/>");
        EXPECT_EQ(setting(channel).precision, refused ? kCatalogue[channel].precision : 77) << channel;
    }
}

TEST_F(ChannelsFile, TypeGivenBeforePrecisionIsAlreadyInForce) {
    read(R"(<channel id="180" type="1" prec="2"/><channel id="181" prec="2" type="1"/>)");
    EXPECT_EQ(setting(180).precision, kCatalogue[180].precision);
    EXPECT_EQ(setting(181).precision, 2);
    EXPECT_EQ(setting(180).unitClass, 1);
    EXPECT_EQ(setting(181).unitClass, 1);
}

TEST_F(ChannelsFile, UserChannelGetsTypeAndNames) {
    const std::string text = "Starboard daggerboard height sensor 1234";
    ASSERT_EQ(text.size(), 40u);
    read("<channel id='180' type='3' user='" + text + "'/>");
    const std::u16string wide(text.begin(), text.end());
    EXPECT_EQ(setting(180).unitClass, 3);
    EXPECT_EQ(readText(setting(180).shortName), wide.substr(0, 15));
    EXPECT_EQ(readText(setting(180).longName), wide.substr(0, 31));
}

TEST_F(ChannelsFile, TypeAndUserAreTakenForUserChannelsOnly) {
    for (std::size_t channel = 1; channel < kChannelCount; ++channel) {
        const std::int16_t before = setting(channel).unitClass;
        read("<channel id='" + std::to_string(channel) + "' type='21' user='Mine'/>");
        const bool user = channel >= 172 && channel <= 203;
        EXPECT_EQ(setting(channel).unitClass, user ? 21 : before) << channel;
        EXPECT_EQ(readText(setting(channel).longName), user ? u"Mine" : u"") << channel;
        EXPECT_EQ(readText(setting(channel).shortName), user ? u"Mine" : u"") << channel;
    }
}

TEST_F(ChannelsFile, TypeKeepsItsLow16Bits) {
    read(R"(<channel id="172" type="65539"/><channel id="173" type="-1"/><channel id="174" type="x"/>)");
    EXPECT_EQ(setting(172).unitClass, 3);
    EXPECT_EQ(setting(173).unitClass, -1);
    EXPECT_EQ(setting(174).unitClass, 0);
}

// KEPT: 203 is a user channel, but its precision is judged by the catalogue's class.
TEST_F(ChannelsFile, PrecisionOfChannel203IsJudgedByTheCatalogue) {
    read(R"(<channel id="203" type="1" prec="2"/><channel id="202" type="1" prec="2"/>)");
    EXPECT_EQ(setting(203).unitClass, 1);
    EXPECT_EQ(setting(203).precision, 2);
    EXPECT_EQ(setting(202).precision, kCatalogue[202].precision);
}

TEST_F(ChannelsFile, NamesAreComparedWithoutRegardToCase) {
    readDocument(R"(<CHANNELS><Channel ID="180" LOG="False" Damp="4" PREC="1" Type="3" USER="Board"/></CHANNELS>)");
    EXPECT_EQ(setting(180).log, 0);
    EXPECT_EQ(setting(180).damping, 4);
    EXPECT_EQ(setting(180).precision, 1);
    EXPECT_EQ(setting(180).unitClass, 3);
    EXPECT_EQ(readText(setting(180).longName), u"Board");
}

TEST_F(ChannelsFile, EmptyAndUnknownAttributesAreSkipped) {
    read(R"(<channel id="180" log="" damp="" prec="" type="" user="" other="1"/><channel id="" log="false"/>)");
    expectAllReset();
}

TEST_F(ChannelsFile, LaterIdOutOfRangeSelectsNothing) {
    read(R"(<channel id="1" prec="5" Id="414" log="false"/>)");
    EXPECT_EQ(setting(1).precision, 5);
    EXPECT_EQ(setting(1).log, 1);
}

TEST_F(ChannelsFile, OtherRootLeavesTheResetValues) {
    readDocument(R"(<boats><channel id="1" prec="5"/></boats>)");
    expectAllReset();
}

TEST_F(ChannelsFile, ElementsOfAnyDepthCount) {
    read(R"(<group><channel id="1" prec="5"><channel id="2" prec="6"/></channel></group>)");
    EXPECT_EQ(setting(1).precision, 5);
    EXPECT_EQ(setting(2).precision, 6);
}

TEST_F(ChannelsFile, MalformedDocumentKeepsWhatWasReadBefore) {
    readDocument(R"(<channels><channel id="1" prec="5"/><channel id="2" prec=6/></channels>)");
    EXPECT_EQ(setting(1).precision, 5);
    EXPECT_EQ(setting(2).precision, kCatalogue[2].precision);
}

TEST_F(ChannelsFile, FailingStepsLeaveResetValues) {
    for (const Step step : {Step::OpenXml, Step::NextElement}) {
        machine.failOnce(step);
        read(R"(<channel id="1" prec="5"/>)");
        expectAllReset();
    }
}

TEST_F(ChannelsFile, NoiseInTheSectionIsSurvived) {
    for (unsigned seed = 0; seed < 5; ++seed) {
        fillWithNoise(seed);
        read(R"(<channel id="180" prec="5" user="Mine"/>)");
        EXPECT_EQ(setting(1).precision, kCatalogue[1].precision);
    }
}

} // namespace
} // namespace tallowmere::test
