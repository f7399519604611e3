// The built-in table against the published channel list, row by row, and facts that follow from it.
#include "core/channels/catalogue.hpp"
#include "core/channels/channel_lookup.hpp"
#include "tests/channels/store_fixture.hpp"

#include <gmock/gmock.h>

#include <map>
#include <string_view>

namespace tallowmere::test {
namespace {

struct ListedRow {
    int index, compact, min, max, timeout, precision, unitClass, ownBoat, dampable, log, sensor;
    std::u16string_view shortName, longName;
};

constexpr ListedRow kListed[] = {
#define ROW(...) ListedRow{__VA_ARGS__},
#include "tests/channels/catalogue_rows.inc"
#undef ROW
};

std::vector<int> channelsWhere(bool (*holds)(const ChannelDef&)) {
    std::vector<int> channels;
    for (const ChannelDef& row : kCatalogue)
        if (holds(row)) channels.push_back(row.index);
    return channels;
}

TEST(Catalogue, HasFourHundredAndFourteenRows) {
    EXPECT_EQ(std::size(kListed), 414U);
    EXPECT_EQ(kCatalogue.size(), 414U);
    EXPECT_EQ(kChannelCount, 414U);
}

TEST(Catalogue, EveryRowEqualsThePublishedList) {
    ASSERT_EQ(std::size(kListed), kCatalogue.size());
    for (std::size_t i = 0; i < kCatalogue.size(); ++i) {
        SCOPED_TRACE(i);
        const ListedRow& listed = kListed[i];
        const ChannelDef& row = kCatalogue[i];
        EXPECT_EQ(listed.index, static_cast<int>(i));
        EXPECT_EQ(row.index, listed.index);
        EXPECT_EQ(row.compactIndex, listed.compact);
        EXPECT_EQ(row.minValue, listed.min);
        EXPECT_EQ(row.maxValue, listed.max);
        EXPECT_EQ(row.timeoutSeconds, listed.timeout);
        EXPECT_EQ(row.precision, listed.precision);
        EXPECT_EQ(row.unitClassCode, listed.unitClass);
        EXPECT_EQ(row.ownBoatProtected, listed.ownBoat);
        EXPECT_EQ(row.dampable, listed.dampable);
        EXPECT_EQ(row.logDefault, listed.log);
        EXPECT_EQ(row.sensorFlag, listed.sensor);
        EXPECT_TRUE(std::u16string_view(row.shortName) == listed.shortName);
        EXPECT_TRUE(std::u16string_view(row.longName) == listed.longName);
    }
}

TEST(Catalogue, RowIsThirtyTwoBytesWithItsFieldsAtFixedOffsets) {
    static_assert(sizeof(ChannelDef) == 32);
    EXPECT_EQ(offsetof(ChannelDef, index), 0U);
    EXPECT_EQ(offsetof(ChannelDef, compactIndex), 2U);
    EXPECT_EQ(offsetof(ChannelDef, minValue), 4U);
    EXPECT_EQ(offsetof(ChannelDef, maxValue), 6U);
    EXPECT_EQ(offsetof(ChannelDef, timeoutSeconds), 8U);
    EXPECT_EQ(offsetof(ChannelDef, precision), 10U);
    EXPECT_EQ(offsetof(ChannelDef, unitClassCode), 11U);
    EXPECT_EQ(offsetof(ChannelDef, ownBoatProtected), 12U);
    EXPECT_EQ(offsetof(ChannelDef, dampable), 13U);
    EXPECT_EQ(offsetof(ChannelDef, logDefault), 14U);
    EXPECT_EQ(offsetof(ChannelDef, sensorFlag), 15U);
    EXPECT_EQ(offsetof(ChannelDef, shortName), 16U);
    EXPECT_EQ(offsetof(ChannelDef, longName), 24U);
}

TEST(Catalogue, TimeOutsComeInSixValues) {
    std::map<int, int> rows;
    for (const ChannelDef& row : kCatalogue) ++rows[row.timeoutSeconds];
    const std::map<int, int> expected{{10, 328}, {60, 52}, {30, 16}, {0, 10}, {600, 7}, {120, 1}};
    EXPECT_EQ(rows, expected);
}

TEST(Catalogue, TimeOutsOtherThanTenSecondsBelongToTheirChannels) {
    EXPECT_THAT(channelsWhere([](const ChannelDef& r) { return r.timeoutSeconds == 600; }),
                ::testing::ElementsAre(252, 253, 254, 255, 257, 273, 274));
    EXPECT_THAT(channelsWhere([](const ChannelDef& r) { return r.timeoutSeconds == 120; }), ::testing::ElementsAre(16));
    EXPECT_THAT(channelsWhere([](const ChannelDef& r) { return r.timeoutSeconds == 0; }),
                ::testing::ElementsAre(161, 162, 163, 164, 165, 166, 268, 315, 316, 404));
    for (std::size_t user = 172; user <= 203; ++user) EXPECT_EQ(kCatalogue[user].timeoutSeconds, 60) << user;
    for (std::size_t volts = 389; volts <= 392; ++volts) EXPECT_EQ(kCatalogue[volts].timeoutSeconds, 60) << volts;
}

TEST(Catalogue, TwoHundredAndSixtyOneRowsHaveNoRange) {
    const auto rows = channelsWhere([](const ChannelDef& r) { return r.minValue == r.maxValue; });
    EXPECT_EQ(rows.size(), 261U);
    for (int channel : rows) EXPECT_EQ(kCatalogue[static_cast<std::size_t>(channel)].minValue, 0) << channel;
}

TEST(Catalogue, OwnBoatProtectedRowsAreTheSatelliteFixChannelsAndFuelLevel2) {
    EXPECT_THAT(channelsWhere([](const ChannelDef& r) { return r.ownBoatProtected != 0; }),
                ::testing::ElementsAre(39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 146, 167, 256, 381));
    for (const ChannelDef& row : kCatalogue) EXPECT_LE(row.ownBoatProtected, 1) << row.index;
}

TEST(Catalogue, CompactSlotsBelongToTheirChannels) {
    constexpr int kChannelOfSlot[34] = {0,  93, 17,  48,  49,  6,   5,   4,  2,  3,  1,  13, 50, 51, 11, 12,  14,
                                        15, 16, 288, 289, 290, 106, 105, 18, 19, 20, 22, 26, 30, 31, 73, 282, 283};
    int kept = 0;
    for (const ChannelDef& row : kCatalogue) {
        if (row.compactIndex == 32767) continue;
        ++kept;
        ASSERT_LT(row.compactIndex, 34) << row.index;
        EXPECT_EQ(kChannelOfSlot[row.compactIndex], row.index);
    }
    EXPECT_EQ(kept, 34);
}

TEST(Catalogue, PrecisionsAreZeroToThreeOrNone) {
    for (const ChannelDef& row : kCatalogue) EXPECT_TRUE(row.precision <= 3 || row.precision == 255) << row.index;
    for (std::size_t user = 172; user <= 203; ++user) EXPECT_EQ(kCatalogue[user].precision, 255) << user;
}

TEST(Catalogue, RangesWorthNotingAreAsPublished) {
    EXPECT_EQ(kCatalogue[48].minValue, -90);
    EXPECT_EQ(kCatalogue[48].maxValue, 90);
    EXPECT_EQ(kCatalogue[49].minValue, -180);
    EXPECT_EQ(kCatalogue[49].maxValue, 360); // kept: longitudes reach to 360
    EXPECT_EQ(kCatalogue[24].minValue, -180);
    EXPECT_EQ(kCatalogue[24].maxValue, 360);
    EXPECT_EQ(kCatalogue[43].maxValue, 50);
    EXPECT_EQ(kCatalogue[12].maxValue, 20);
}

TEST(Catalogue, RowZeroHasNoShortNameAndTheLongNameTime) {
    EXPECT_TRUE(std::u16string_view(kCatalogue[0].shortName).empty());
    EXPECT_TRUE(std::u16string_view(kCatalogue[0].longName) == u"Time");
    EXPECT_TRUE(shortNameOf(nullptr, 0).empty());
    EXPECT_TRUE(longNameOf(nullptr, 0) == u"Time");
}

TEST(Catalogue, ChannelsFrom414OnHaveNoRow) {
    for (std::size_t channel : {std::size_t{414}, std::size_t{32767}, std::size_t{65535}, SIZE_MAX}) {
        EXPECT_EQ(catalogueRow(channel), nullptr);
        EXPECT_EQ(unitClassOf(nullptr, channel), UnitClass::Plain);
        EXPECT_EQ(settingsUnitClassOf(nullptr, channel), UnitClass::Plain);
        EXPECT_EQ(storageKindOf(nullptr, channel), StorageKind::Double);
        EXPECT_TRUE(shortNameOf(nullptr, channel).empty());
        EXPECT_TRUE(longNameOf(nullptr, channel).empty());
    }
    EXPECT_NE(catalogueRow(413), nullptr);
}

TEST(UnitClasses, OnlyTimesAndIntegerCodesAreNoDoubles) {
    for (int code = -32768; code <= 32767; ++code) {
        const auto expected = code == 1 || code == 2 ? StorageKind::Time
                              : code == 11           ? StorageKind::Integer
                                                     : StorageKind::Double;
        ASSERT_EQ(storageKindOf(static_cast<UnitClass>(static_cast<std::int16_t>(code))), expected) << code;
    }
}

class ChannelLookup : public StoreTest {};

TEST_F(ChannelLookup, UserChannels172To202TakeTheClassOfTheirSettings) {
    for (std::size_t channel = 172; channel <= 202; ++channel) {
        raw.put<std::int16_t>(place::unitClass(channel), 6);
        EXPECT_EQ(unitClassOf(memory.area(), channel), UnitClass::Bearing) << channel;
    }
}

TEST_F(ChannelLookup, Channel203KeepsTheCataloguesClassWhateverItsSettingsSay) {
    raw.put<std::int16_t>(place::unitClass(203), 1);
    EXPECT_EQ(unitClassOf(memory.area(), 203), UnitClass::Plain);
    EXPECT_EQ(settingsUnitClassOf(memory.area(), 203), UnitClass::DateTime);
    EXPECT_EQ(storageKindOf(memory.area(), 203), StorageKind::Time);
}

TEST_F(ChannelLookup, OtherChannelsTakeTheCataloguesClassButTheSettingsStorageKind) {
    raw.put<std::int16_t>(place::unitClass(1), 11);
    EXPECT_EQ(unitClassOf(memory.area(), 1), UnitClass::BoatSpeed);
    EXPECT_EQ(storageKindOf(memory.area(), 1), StorageKind::Integer);
    raw.put<std::int16_t>(place::unitClass(171), 6);
    EXPECT_EQ(unitClassOf(memory.area(), 171), kCatalogue[171].unitClass());
    raw.put<std::int16_t>(place::unitClass(204), 6);
    EXPECT_EQ(unitClassOf(memory.area(), 204), UnitClass::TimeSpan);
}

TEST_F(ChannelLookup, NameOfTheSettingsWinsWhenItIsNotEmpty) {
    EXPECT_TRUE(shortNameOf(memory.area(), 175) == u"User 3");
    raw.putText(place::shortName(175), u"Kite");
    raw.putText(place::longName(175), u"Kite size");
    EXPECT_TRUE(shortNameOf(memory.area(), 175) == u"Kite");
    EXPECT_TRUE(longNameOf(memory.area(), 175) == u"Kite size");
    raw.putText(place::shortName(0), u"Clock");
    EXPECT_TRUE(shortNameOf(memory.area(), 0) == u"Clock");
}

TEST_F(ChannelLookup, NameWithoutATerminatorEndsAtItsField) {
    for (std::size_t i = 0; i < 16; ++i) raw.put<char16_t>(place::shortName(175) + 2 * i, u'x');
    for (std::size_t i = 0; i < 32; ++i) raw.put<char16_t>(place::longName(175) + 2 * i, u'y');
    EXPECT_TRUE(shortNameOf(memory.area(), 175) == std::u16string(15, u'x'));
    EXPECT_TRUE(longNameOf(memory.area(), 175) == std::u16string(31, u'y'));
}

} // namespace
} // namespace tallowmere::test
