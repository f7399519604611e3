// The compiled-in items against the table as it is documented for users.
#include "calibration/item_table.hpp"
#include "core/channels/channel_lookup.hpp"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace tallowmere::test {
namespace {

// id|name|unit|channel|column input|row input|columns|rows|value|column start|row start|column step|row step|
// shared columns|in use and always applied
constexpr const char* kDocumented[] = {
    "0|Rate of turn|°/s|-|1 BSP|-|7|1|15|0|0|5|0|1|1",
    "1|Acceleration|kt/min|-|5 TWS|4 TWA|7|1|10|0|0|5|45|1|1",
    "2|Bsp|kt|1 BSP|1 BSP|18 Heel|7|1|0|0|0|5|0|1|0",
    "3|Aws|kt|3 AWS|2 AWA|3 AWS|5|7|0|0|0|45|5|1|0",
    "4|AwaOffset|°|2 AWA|2 AWA|-|1|1|0|0|0|0|0|1|0",
    "5|Awa|°|2 AWA|2 AWA|3 AWS|5|7|0|0|0|45|5|1|0",
    "6|Tws|kt|5 TWS|4 TWA|5 TWS|10|7|0|0|0|45|5|0|0",
    "7|Twa|°|4 TWA|4 TWA|5 TWS|10|7|0|0|0|45|5|0|0",
    "8|Hdg|°|13 HDG|13 HDG|-|1|1|0|0|0|0|0|1|0",
    "9|Twd|°|6 TWD|6 TWD|-|1|1|0|0|0|0|0|1|0",
    "10|Leeway||10 Leeway|4 TWA|5 TWS|1|1|13|0|0|45|5|1|1",
    "11|Heel|°|18 Heel|18 Heel|-|1|1|0|0|0|0|0|1|0",
    "12|Trim|°|19 Trim|19 Trim|-|1|1|0|0|0|0|0|1|0",
    "13|MastAngle|°|24 MastAng|24 MastAng|-|1|1|0|0|0|0|0|1|0",
    "14|RudderAngle|°|20 Rudder|20 Rudder|-|1|1|0|0|0|0|0|1|0",
    "15|Wind weight||-|-|-|1|1|1|0|0|0|0|1|0",
    "16|Mast height||-|-|-|1|1|10|0|0|0|0|1|1",
    "17|SeaTemp|°|15 SeaTemp|15 SeaTemp|-|1|1|0|0|0|0|0|1|0",
    "18|Brake|s to stop|-|32 ROT|-|5|1|100|0|0|30|0|1|0",
    "19|Baro|mb|16 Baro|16 Baro|-|6|1|0|900|0|50|0|1|0",
};

std::string utf8(std::u16string_view text) {
    std::string narrow;
    for (const char16_t c : text) narrow += c == u'\u00B0' ? std::string("°") : std::string(1, static_cast<char>(c));
    return narrow;
}

std::string channelText(std::uint16_t channel) {
    if (channel == 32767) return "-";
    return std::to_string(channel) + " " + utf8(kCatalogue.at(channel).shortName);
}

std::string describe(const CalibrationItemDef& row) {
    std::ostringstream text;
    text << row.id << '|' << utf8(row.name) << '|' << utf8(row.unit) << '|' << channelText(row.channel) << '|'
         << channelText(row.columnInput) << '|' << channelText(row.rowInput) << '|' << int{row.columns} << '|'
         << int{row.rows} << '|' << row.defaultValue << '|' << row.columnStart << '|' << row.rowStart << '|'
         << row.columnStep << '|' << row.rowStep << '|' << int{row.sharedColumns} << '|' << int{row.useByDefault};
    return text.str();
}

TEST(CalibrationItemTable, RowsAreTheDocumentedOnes) {
    ASSERT_EQ(std::size(kDocumented), kCalibrationItems.size());
    for (std::size_t id = 0; id < kCalibrationItems.size(); ++id) {
        EXPECT_EQ(describe(kCalibrationItems[id]), kDocumented[id]);
        EXPECT_EQ(kCalibrationItems[id].alwaysApply, kCalibrationItems[id].useByDefault) << id;
    }
}

} // namespace
} // namespace tallowmere::test
