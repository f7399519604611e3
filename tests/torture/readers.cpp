// Eight processes read and write the same places at full speed; every value read is one that somebody wrote.
#include "tests/torture/roles.hpp"
#include "tests/torture/self_checking_records.hpp"
#include "tests/torture/system.hpp"

#include <array>
#include <bit>
#include <bitset>
#include <cstdio>
#include <sstream>

namespace tallowmere::torture {
namespace {

constexpr unsigned kWriters = 3;
constexpr unsigned kReaders = 5;
constexpr int kRoundsBetweenLooks = 256;

// Days since 1899-12-30 of the moments that are written: a self-checking time counted from 1601.
constexpr double kFirstMoment = -109205;
constexpr double kLastMoment = kFirstMoment + 1304;

/// What stands on a place.
enum class Standing {
    OwnKind, // records of the channel's own kind, with no other header
    Moments, // likewise, but a moment's double is in whole seconds and does not tell who wrote it
    AnyKind, // records of every kind, as SetZanVar2 takes them on any channel
};
struct RacePlace {
    Place at;
    Standing standing = Standing::OwnKind;
    unsigned kind = ZAN_KIND_DOUBLE; // the channel's own
};

/// Some of each kind of block and of record: on these most of the race is run.
const std::array<RacePlace, 18> kHotPlaces{{
    {{ZAN_BSP, 0}},
    {{ZAN_AWA, 0}},
    {{ZAN_USER_20, 0}},
    {{ZAN_BSP, 1}},
    {{ZAN_USER_20, 1}},
    {{ZAN_BSP, 2}},
    {{ZAN_HDG, 50}},
    {{ZAN_BSP, 99}},
    {{ZAN_TMTOLN, 0}, Standing::OwnKind, ZAN_KIND_TIME},
    {{ZAN_BURN, 0}, Standing::OwnKind, ZAN_KIND_TIME},
    {{ZAN_TMTOLN, 1}, Standing::OwnKind, ZAN_KIND_TIME},
    {{ZAN_GPS_TIME, 1}, Standing::Moments, ZAN_KIND_TIME},
    {{ZAN_SAIL, 0}, Standing::OwnKind, ZAN_KIND_INTEGER},
    {{ZAN_SAILMARK, 0}, Standing::OwnKind, ZAN_KIND_INTEGER},
    {{ZAN_SAIL, 1}, Standing::OwnKind, ZAN_KIND_INTEGER},
    {{ZAN_LAYTIME, 0}, Standing::AnyKind, ZAN_KIND_TIME},
    {{ZAN_SAILNEXT, 0}, Standing::AnyKind, ZAN_KIND_INTEGER},
    {{ZAN_LAYTIME, 1}, Standing::AnyKind, ZAN_KIND_TIME},
}};

/// Calls `visit` for every place in turn, with the hot ones in between, until told to stop.
template <class Visit> void race(Visit visit) {
    const std::vector<Place> places = compactPlaces(false);
    std::size_t next = 0;
    do {
        for (int round = 0; round < kRoundsBetweenLooks; ++round) {
            for (const RacePlace& hot : kHotPlaces) visit(hot);
            visit({places[next++ % places.size()]});
        }
    } while (!inputWaits());
}

/// Of every kind in turn.
unsigned kindOf(const Origin& origin) {
    return static_cast<unsigned>(std::popcount(origin.sequence)) % (ZAN_KIND_TIME + 1);
}

void write(const Library& library, const RacePlace& place, const Origin& origin) {
    const auto& [at, standing, ownKind] = place;
    const unsigned kind = standing == Standing::AnyKind ? kindOf(origin) : ownKind;
    const std::uint64_t payload = selfCheckingPayload(origin, kind, at);
    if (standing == Standing::OwnKind && !isOfRecord(origin)) {
        library.setZanVar(at.channel, asDouble(payload, kind), at.boat);
        return;
    }
    const std::uint64_t header = standing == Standing::AnyKind ? selfCheckingHeader(origin, kind, at) : kind;
    const ChannelValue record = recordOf({header, payload});
    library.setZanVar2(at.channel, &record, at.boat);
}

void writeUntilTold(const Library& library, unsigned writer) {
    std::uint32_t sequence = 0;
    race([&](const RacePlace& place) { write(library, place, {writer, ++sequence}); });
    say("0 0 0 0 " + std::to_string(sequence) + "\n");
}

struct Seen {
    std::uint64_t reads = 0;
    std::uint64_t wrong = 0;
    std::uint64_t mixed = 0; // records whose header is of another write than their payload
    std::bitset<64> writers;
};

/// Header and payload are somebody's each, whatever their kinds.
std::optional<Origin> originOfAnyKind(const RecordWords& words, const Place& at, Seen& seen) {
    const auto header = originOfHeader(words.header, at);
    for (unsigned kind = 0; header && kind <= ZAN_KIND_TIME; ++kind) {
        const auto origin = originOfPayload(words.payload, kind, at);
        // The others hold more of a sequence than an integer does.
        if (origin && kind != ZAN_KIND_INTEGER && origin != header) ++seen.mixed;
        if (origin) return origin;
    }
    return std::nullopt;
}

/// A record of a kind and a value that somebody wrote.
std::optional<Origin> readRecord(const Library& library, const RacePlace& place, Seen& seen) {
    const auto& [at, standing, kind] = place;
    std::uint16_t source = 0;
    ChannelValue record{};
    if (library.getZanVar2(at.channel, &record, at.boat, &source) == 0 || source != at.channel) return std::nullopt;
    const RecordWords words = wordsOf(record);
    if (standing == Standing::AnyKind) return originOfAnyKind(words, at, seen);
    return words.header == kind ? originOfPayload(words.payload, kind, at) : std::nullopt;
}

/// What is read by the kind of any record has no rule, and is no double at all where the channel's kind does not fit.
std::optional<Origin> readValue(const Library& library, const RacePlace& place) {
    const auto& [at, standing, kind] = place;
    std::uint16_t source = 0;
    double value = 0;
    const bool has = library.getZanVar(at.channel, &value, at.boat, &source) != 0;
    if (source != at.channel || has != (value != NO_VALUE)) return std::nullopt;
    if (standing == Standing::OwnKind) return originOfDouble(value, kind, at);
    const bool isPossible = standing == Standing::AnyKind || (value >= kFirstMoment && value <= kLastMoment);
    return isPossible ? std::optional(Origin{}) : std::nullopt;
}

void readUntilTold(const Library& library) {
    Seen seen;
    race([&](const RacePlace& place) {
        const bool asRecord = std::popcount(++seen.reads) % 2 != 0;
        const auto origin = asRecord ? readRecord(library, place, seen) : readValue(library, place);
        if (origin)
            seen.writers.set(origin->writer % 64);
        else
            ++seen.wrong;
    });
    say(std::to_string(seen.reads) + " " + std::to_string(seen.wrong) + " " + std::to_string(seen.mixed) + " " +
        std::to_string(seen.writers.count()) + " 0\n");
}

} // namespace

int beRacer(const Arguments& arguments) {
    const auto writer = static_cast<unsigned>(std::stoul(arguments.at(0)));
    const Library library;
    say("ready\n");
    if (!readLine()) return 1;
    writer > 0 ? writeUntilTold(library, writer) : readUntilTold(library);
    return 0;
}

int runReaders(unsigned seconds) {
    const Surroundings surroundings;
    const Library library;
    for (const Place& at : compactPlaces(false)) write(library, {at}, {0, 0});
    for (const RacePlace& hot : kHotPlaces) write(library, hot, {0, 0});

    std::vector<Process> racers;
    for (unsigned i = 0; i < kWriters + kReaders; ++i)
        racers.emplace_back(Arguments{"racer", std::to_string(i < kWriters ? i + 1 : 0)});
    for (Process& racer : racers) racer.hear();
    for (Process& racer : racers) racer.say("go");
    sleepMicroseconds(std::int64_t{seconds} * 1'000'000);
    for (Process& racer : racers) racer.say("stop");

    std::uint64_t reads = 0;
    std::uint64_t wrong = 0;
    std::uint64_t mixed = 0;
    std::uint64_t writes = 0;
    for (Process& racer : racers) {
        std::istringstream words(racer.hear());
        std::uint64_t itsReads = 0;
        std::uint64_t itsWrong = 0;
        std::uint64_t itsMixed = 0;
        unsigned writersSeen = 0;
        std::uint64_t itsWrites = 0;
        words >> itsReads >> itsWrong >> itsMixed >> writersSeen >> itsWrites;
        if (!words || racer.finish() != 0) return 1;
        std::printf("  %llu reads of values by %u writers, %llu writes\n", static_cast<unsigned long long>(itsReads),
                    writersSeen, static_cast<unsigned long long>(itsWrites));
        reads += itsReads;
        wrong += itsWrong;
        mixed += itsMixed;
        writes += itsWrites;
    }
    std::printf(
        "%u processes, %u s: %llu reads, %llu writes, %llu records with the header of another write, %llu values "
        "that nobody wrote\n",
        kWriters + kReaders, seconds, static_cast<unsigned long long>(reads), static_cast<unsigned long long>(writes),
        static_cast<unsigned long long>(mixed), static_cast<unsigned long long>(wrong));
    return wrong == 0 && reads > 0 && writes > 0 ? 0 : 1;
}

} // namespace tallowmere::torture
