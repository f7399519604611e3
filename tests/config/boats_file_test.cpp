#include "core/config/boats_file.hpp"
#include "tests/support/new_section.hpp"

#include <random>
#include <vector>

namespace tallowmere::test {
namespace {

constexpr std::uint32_t kLightGreen = 0x90EE90;

class BoatsFile : public NewSection {
  protected:
    void read(const std::string& document, TrackSettings* tracks = nullptr) {
        machine.addFile(u"C:\\ProgramData\\Tallowmere\\config\\boats.xml", document);
        readBoats(context, tracks);
    }
    std::u16string nameOf(std::size_t boat) { return readText(area->boats[boat].name); }
    void expectReset(std::size_t boat) {
        EXPECT_EQ(nameOf(boat), boat == 0 ? u"" : defaultName(boat));
        EXPECT_EQ(area->boats[boat].mmsi, 0u) << boat;
        EXPECT_EQ(area->boats[boat].colour, kLightGreen) << boat;
    }
    static std::u16string defaultName(std::size_t boat) {
        const std::string digits = std::to_string(boat);
        return u"Boat " + std::u16string(digits.begin(), digits.end());
    }
    void expectAllReset() {
        for (std::size_t boat = 0; boat < kBoatCount; ++boat) expectReset(boat);
    }
};

TEST_F(BoatsFile, WithoutFileEveryBoatIsReset) {
    for (BoatEntry& boat : area->boats) {
        writeText(boat.name, u"Old");
        boat.mmsi = 5;
        boat.colour = 6;
    }
    readBoats(context, nullptr);
    expectAllReset();
    EXPECT_EQ(nameOf(99), u"Boat 99");
}

TEST_F(BoatsFile, ResetLeavesTheOtherFieldsOfABoat) {
    area->boats[4].hasData = 1;
    readBoats(context, nullptr);
    EXPECT_EQ(area->boats[4].hasData, 1);
    EXPECT_EQ(area->boats[4].number, 32767u);
}

TEST_F(BoatsFile, WithoutSectionNothingIsAsked) {
    readBoats(withoutSection, nullptr);
    EXPECT_TRUE(machine.trace.empty());
}

TEST_F(BoatsFile, ConfigFolderIsMade) {
    readBoats(context, nullptr);
    EXPECT_TRUE(machine.files.contains(u"C:\\ProgramData\\Tallowmere\\config"));
}

TEST_F(BoatsFile, BoatGetsNameAndColourAndTheOthersKeepTheirs) {
    read(R"(<boats><boat id="3" name="Falcon" r="255" g="0" b="0"/></boats>)");
    EXPECT_EQ(nameOf(3), u"Falcon");
    EXPECT_EQ(area->boats[3].colour, 0x0000FFu);
    for (std::size_t boat = 0; boat < kBoatCount; ++boat)
        if (boat != 3) expectReset(boat);
}

TEST_F(BoatsFile, NameBeforeIdIsNotApplied) {
    read(R"(<boats><boat name="Falcon" id="4"/></boats>)");
    expectAllReset();
}

TEST_F(BoatsFile, ColourBeforeIdIsKeptForTheBoatThatIdSelects) {
    read(R"(<boats><boat r="1" g="2" b="3" id="4"/></boats>)");
    EXPECT_EQ(area->boats[4].colour, 0x030201u);
}

TEST_F(BoatsFile, IdOutOfRangeChangesNothing) {
    readBoats(context, nullptr);
    const auto before = std::make_unique<SharedArea>(*area);
    read(R"(<boats><boat id="100" name="Falcon" mmsi="1" r="1"/><boat id="-1" name="Falcon" mmsi="1" r="1"/>
            <boat id="99999999999" name="Falcon"/></boats>)");
    EXPECT_TRUE(sameBytes(*before));
}

TEST_F(BoatsFile, LastBoatIs99) {
    read(R"(<boats><boat id="99" name="Last"/></boats>)");
    EXPECT_EQ(nameOf(99), u"Last");
}

TEST_F(BoatsFile, IdWithoutDigitsIsBoatZero) {
    read(R"(<boats><boat id="own" name="Kittiwake"/></boats>)");
    EXPECT_EQ(nameOf(0), u"Kittiwake");
}

TEST_F(BoatsFile, LaterIdTakesTheAttributesBehindIt) {
    read(R"(<boats><boat id="2" name="Two" ID="3" mmsi="9" r="0" g="0" b="0"/></boats>)");
    EXPECT_EQ(nameOf(2), u"Two");
    EXPECT_EQ(area->boats[2].colour, kLightGreen);
    EXPECT_EQ(area->boats[3].mmsi, 9u);
    EXPECT_EQ(area->boats[3].colour, 0u);
}

TEST_F(BoatsFile, NamesAreComparedWithoutRegardToCase) {
    read(R"(<Boats><BOAT Id="3" NAME="Falcon" MmSi="123" R="1" G="2" B="3"/></Boats>)");
    EXPECT_EQ(nameOf(3), u"Falcon");
    EXPECT_EQ(area->boats[3].mmsi, 123u);
    EXPECT_EQ(area->boats[3].colour, 0x030201u);
}

TEST_F(BoatsFile, OtherRootLeavesTheResetValues) {
    read(R"(<fleet><boats><boat id="3" name="Falcon"/></boats></fleet>)");
    expectAllReset();
    read(R"(<boat id="3" name="Falcon"/>)");
    expectAllReset();
}

TEST_F(BoatsFile, BoatsOfAnyDepthCount) {
    read(R"(<boats><fleet><group><boat id="3" name="Falcon"/></group></fleet><boat id="4" name="Heron">
            <boat id="5" name="Wren"/></boat></boats>)");
    EXPECT_EQ(nameOf(3), u"Falcon");
    EXPECT_EQ(nameOf(4), u"Heron");
    EXPECT_EQ(nameOf(5), u"Wren");
}

TEST_F(BoatsFile, OtherElementsAndAttributesAreIgnored) {
    read(R"(<boats id="2" name="Root"><ship id="3" name="Falcon"/><boat id="4" kind="fast"/><boat/></boats>)");
    expectAllReset();
}

TEST_F(BoatsFile, EmptyAttributesAreSkipped) {
    read(R"(<boats><boat id="3" name="" mmsi="" r=""/><boat id="" name="Nobody"/></boats>)");
    expectAllReset();
}

TEST_F(BoatsFile, NameIsCutTo31Characters) {
    read("<boats><boat id='3' name='" + std::string(40, 'n') + "'/></boats>");
    EXPECT_EQ(nameOf(3), std::u16string(31, u'n'));
    EXPECT_EQ(area->boats[3].name[31], u'\0');
}

TEST_F(BoatsFile, NameKeepsLettersOfAnyScript) {
    read("<?xml version='1.0' encoding='UTF-8'?><boats><boat id='3' name='\xC3\x86gir &amp; \xE2\x9A\x93'/></boats>");
    EXPECT_EQ(nameOf(3), u"\u00C6gir & \u2693");
}

TEST_F(BoatsFile, ColourComponentsKeepTheirLow8Bits) {
    read(R"(<boats><boat id="3" r="256" g="-1" b="511"/><boat id="4" r="99999999999" g="x" b=" 7"/></boats>)");
    EXPECT_EQ(area->boats[3].colour, 0xFFFF00u);
    EXPECT_EQ(area->boats[4].colour, 0x0700FFu); // the largest int has all bits of its low byte set
}

TEST_F(BoatsFile, BoatWithoutColourBecomesLightGreenAgain) {
    read(R"(<boats><boat id="3" r="1" g="1" b="1"/><boat id="3" name="Falcon"/></boats>)");
    EXPECT_EQ(area->boats[3].colour, kLightGreen);
}

TEST_F(BoatsFile, MmsiIsReadLikeAnUnsignedNumber) {
    read(R"(<boats><boat id="1" mmsi="244660123"/><boat id="2" mmsi=" 12x"/><boat id="3" mmsi="-1"/>
            <boat id="4" mmsi="4294967297"/><boat id="5" mmsi="99999999999999999999"/><boat id="6" mmsi="none"/>
            </boats>)");
    EXPECT_EQ(area->boats[1].mmsi, 244660123u);
    EXPECT_EQ(area->boats[2].mmsi, 12u);
    EXPECT_EQ(area->boats[3].mmsi, 0xFFFFFFFFu);
    EXPECT_EQ(area->boats[4].mmsi, 1u);
    EXPECT_EQ(area->boats[5].mmsi, 0xFFFFFFFFu);
    EXPECT_EQ(area->boats[6].mmsi, 0u);
}

TEST_F(BoatsFile, ChangedMmsiEmptiesTheTrackOfThatBoatOnly) {
    TrackSettings tracks(platform);
    for (BoatTrack& track : tracks.tracks) track.points.resize(10);
    read(R"(<boats><boat id="3" mmsi="244660123"/><boat id="4" mmsi="0"/><boat id="5" mmsi="none"/></boats>)", &tracks);
    EXPECT_TRUE(tracks.tracks[3].points.empty());
    for (const std::size_t boat : {0u, 2u, 4u, 5u, 99u}) EXPECT_EQ(tracks.tracks[boat].points.size(), 10u) << boat;
    EXPECT_EQ(area->trackReset, 0);
}

TEST_F(BoatsFile, MalformedDocumentKeepsWhatWasReadBefore) {
    read(R"(<boats><boat id="3" name="Falcon"/><boat id="4" name="Heron></boats>)");
    EXPECT_EQ(nameOf(3), u"Falcon");
    expectReset(4);
}

TEST_F(BoatsFile, DocumentTypeMakesTheFileForeign) {
    read(R"(<!DOCTYPE boats [<!ENTITY n "Falcon">]><boats><boat id="3" name="Falcon"/></boats>)");
    expectAllReset();
}

TEST_F(BoatsFile, FailingStepsLeaveResetValues) {
    for (const Step step : {Step::OpenXml, Step::NextElement}) {
        machine.failOnce(step);
        read(R"(<boats><boat id="3" name="Falcon"/></boats>)");
        expectAllReset();
    }
}

TEST_F(BoatsFile, ReadingThatFailsHalfWayKeepsWhatWasReadBefore) {
    machine.failOnce(Step::NextElement, 3);
    read(R"(<boats><boat id="3" name="Falcon"/><boat id="4" name="Heron"/></boats>)");
    EXPECT_EQ(nameOf(3), u"Falcon");
    expectReset(4);
}

TEST_F(BoatsFile, FolderInPlaceOfTheFileIsNoFile) {
    (void)machine.files.try_emplace(u"C:\\ProgramData\\Tallowmere", std::nullopt);
    (void)machine.files.try_emplace(u"C:\\ProgramData\\Tallowmere\\config", std::nullopt);
    (void)machine.files.try_emplace(u"C:\\ProgramData\\Tallowmere\\config\\boats.xml", std::nullopt);
    readBoats(context, nullptr);
    expectAllReset();
}

TEST_F(BoatsFile, ThousandsOfElementsAndAttributesAreSurvived) {
    std::string document = "<boats>";
    for (int boat = 0; boat < 20'000; ++boat)
        document += "<boat id='" + std::to_string(boat) + "' name='N" + std::to_string(boat) + "'/>";
    document += "<boat id='7'";
    for (int attribute = 0; attribute < 2'000; ++attribute) document += " a" + std::to_string(attribute) + "='1'";
    read(document + " mmsi='8'/></boats>");
    EXPECT_EQ(nameOf(99), u"N99");
    EXPECT_EQ(area->boats[7].mmsi, 8u);
}

/// The system's own reader on Windows, as Wine imitates it, does not return from documents that are cut; so
/// these run where the library brings its own.
TEST_F(BoatsFile, NothingBeyondTheBoatsIsTouchedWhateverTheBytes) {
    if (platform::hostPlatform().separator() != u'/') GTEST_SKIP() << "Wine's reader hangs on cut documents";
    const std::string document =
        R"(<boats><boat id="3" name="Falcon" mmsi="5" r="1"/><boat id="98" name="Wren"/></boats>)";
    readBoats(context, nullptr);
    const auto before = std::make_unique<SharedArea>(*area);
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        std::string damaged = document;
        for (int count = 0; count < 3; ++count) damaged[random() % damaged.size()] = static_cast<char>(random() % 256);
        damaged.resize(random() % (damaged.size() + 1));
        read(damaged);
        std::memcpy(before->boats, area->boats, sizeof area->boats);
        ASSERT_TRUE(sameBytes(*before)) << damaged;
    }
}

TEST_F(BoatsFile, NoiseInTheSectionIsOverwrittenOrLeft) {
    fillWithNoise(3);
    std::fill(std::begin(area->dataFolder), std::end(area->dataFolder), u'x'); // no terminator
    readBoats(context, nullptr);
    for (std::size_t boat = 0; boat < kBoatCount; ++boat) expectReset(boat);
}

} // namespace
} // namespace tallowmere::test
