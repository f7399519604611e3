#include "core/config/boats_file.hpp"

#include "core/channels/section_access.hpp"
#include "core/config/config_document.hpp"
#include "core/config/number_scanner.hpp"
#include "settings/reg_ex.hpp"

namespace tallowmere {
namespace {

void resetBoats(SharedArea& area) {
    for (std::size_t boat = 0; boat < kBoatCount; ++boat) {
        BoatEntry& entry = area.boats[boat];
        writeOnce(entry.mmsi, 0);
        writeOnce(entry.colour, kDefaultBoatColour);
        writeText(entry.name, boat == 0 ? std::u16string() : indexedName(u"Boat ", boat));
    }
}

/// A colour component: the low 8 bits of the integer that the text holds.
std::uint32_t component(std::u16string_view text) noexcept {
    return static_cast<std::uint32_t>(leadingInteger(text)) & 0xFF;
}

/// The boat that an "id" selects; null for a number that no boat has.
BoatEntry* selectBoat(SharedArea& area, std::u16string_view id) noexcept {
    const std::int32_t number = leadingInteger(id);
    if (number < 0 || number >= static_cast<std::int32_t>(kBoatCount)) return nullptr;
    return &area.boats[number];
}

void setMmsi(SharedArea& area, TrackSettings* tracks, BoatEntry& boat, std::u16string_view text) noexcept {
    const std::optional<std::uint32_t> mmsi = leadingUnsigned(text);
    if (!mmsi || *mmsi == readOnce(boat.mmsi)) return;
    writeOnce(boat.mmsi, *mmsi);
    // Another vessel now: what was recorded under this number is not its track.
    if (tracks != nullptr) resetBoatTrack(area, *tracks, static_cast<BoatIndex>(&boat - area.boats));
}

/// Attributes count in the order of the document: those before "id" select nothing, but a colour is
/// stored at the end, for the boat selected by then.
void applyBoat(SharedArea& area, TrackSettings* tracks, const platform::XmlElement& element) noexcept {
    BoatEntry* boat = nullptr;
    std::uint32_t red = kDefaultBoatColour & 0xFF;
    std::uint32_t green = kDefaultBoatColour >> 8 & 0xFF;
    std::uint32_t blue = kDefaultBoatColour >> 16 & 0xFF;
    for (const auto& [name, value] : element.attributes) {
        if (value.empty()) continue;
        if (equalsIgnoringCase(name, u"id"))
            boat = selectBoat(area, value);
        else if (equalsIgnoringCase(name, u"r"))
            red = component(value);
        else if (equalsIgnoringCase(name, u"g"))
            green = component(value);
        else if (equalsIgnoringCase(name, u"b"))
            blue = component(value);
        else if (boat != nullptr && equalsIgnoringCase(name, u"name"))
            writeText(boat->name, value);
        else if (boat != nullptr && equalsIgnoringCase(name, u"mmsi"))
            setMmsi(area, tracks, *boat, value);
    }
    if (boat != nullptr) writeOnce(boat->colour, red | green << 8 | blue << 16);
}

} // namespace

void readBoats(const Context& context, TrackSettings* tracks) {
    if (context.area == nullptr) return;
    resetBoats(*context.area);
    const std::unique_ptr<platform::XmlReader> reader = openConfigDocument(context, u"boats.xml", u"boats");
    if (reader == nullptr) return;
    platform::XmlElement element;
    while (reader->next(element))
        if (equalsIgnoringCase(element.name, u"boat")) applyBoat(*context.area, tracks, element);
}

} // namespace tallowmere
