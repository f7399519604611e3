// boats.xml through the real parser into a section: only names, MMSI numbers and colours of boats may change.
#include "core/config/boats_file.hpp"
#include "fuzz/support/reader_section.hpp"

namespace tallowmere::fuzz {
namespace {

constexpr std::size_t kEntries = 51092;
constexpr std::size_t kEntryBytes = 80;
constexpr std::size_t kNameUnits = 32;

void checkEntry(const SharedArea& area, std::size_t boat) {
    const BoatEntry& entry = area.boats[boat];
    if (std::find(entry.name, entry.name + kNameUnits, u'\0') == entry.name + kNameUnits) fail("unended name", boat);
    if (entry.colour >> 24 != 0) fail("colour beyond 24 bits", boat);
}

} // namespace

void boats(Bytes input) {
    static ReaderSection reader{{{kEntries, kEntryBytes * kBoatCount}}};
    reader.platform.document = documentFile(textOf(input));
    readBoats(reader.context(), nullptr);
    for (std::size_t boat = 0; boat < kBoatCount; ++boat) {
        reader.watched.allow(kEntries + kEntryBytes * boat + 6, 2 * kNameUnits);
        reader.watched.allow(kEntries + kEntryBytes * boat + 72, 8); // MMSI and colour
        checkEntry(*reader.watched.area(), boat);
    }
    reader.finish("boats.xml wrote elsewhere");
}

} // namespace tallowmere::fuzz
