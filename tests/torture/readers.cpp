// Eight processes read and write the same places at full speed; every value read is one that somebody wrote.
#include "tests/torture/roles.hpp"
#include "tests/torture/self_checking.hpp"
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
constexpr std::size_t kHotPlaces = 8; // on these most of the race is run
constexpr int kRoundsBetweenLooks = 256;
constexpr unsigned kRecordsEvery = 4; // each so many reads one is of a whole record

/// Some of each kind of block, then all the others.
std::vector<Place> racePlaces() {
    std::vector<Place> places{{ZAN_BSP, 0},     {ZAN_AWA, 0}, {ZAN_USER_20, 0}, {ZAN_BSP, 1},
                              {ZAN_USER_20, 1}, {ZAN_BSP, 2}, {ZAN_HDG, 50},    {ZAN_BSP, 99}};
    for (const Place& place : compactPlaces(false)) places.push_back(place);
    return places;
}

/// Calls `visit` for every place in turn, with the hot ones in between, until told to stop.
template <class Visit> void race(Visit visit) {
    const std::vector<Place> places = racePlaces();
    std::size_t next = 0;
    do {
        for (int round = 0; round < kRoundsBetweenLooks; ++round) {
            for (std::size_t hot = 0; hot < kHotPlaces; ++hot) visit(places[hot]);
            visit(places[next++ % places.size()]);
        }
    } while (!inputWaits());
}

void writeUntilTold(const Library& library, unsigned writer) {
    std::uint32_t sequence = 0;
    race([&](const Place& place) {
        library.setZanVar(place.channel, selfChecking({writer, ++sequence}, place.channel, place.boat), place.boat);
    });
    say("0 0 0 " + std::to_string(sequence) + "\n");
}

struct Seen {
    std::uint64_t reads = 0;
    std::uint64_t wrong = 0;
    std::bitset<64> writers;
};

/// A record of one kind and a value that somebody wrote.
bool readRecord(const Library& library, const Place& place, double& value) {
    std::uint16_t source = 0;
    ChannelValue record{};
    const bool has = library.getZanVar2(place.channel, &record, place.boat, &source) != 0;
    value = record.payload.number;
    return has && std::bit_cast<std::array<std::uint64_t, 2>>(record)[0] == ZAN_KIND_DOUBLE;
}

bool readValue(const Library& library, const Place& place, double& value) {
    std::uint16_t source = 0;
    return library.getZanVar(place.channel, &value, place.boat, &source) != 0;
}

void readUntilTold(const Library& library) {
    Seen seen;
    race([&](const Place& place) {
        double value = 0;
        const bool has =
            ++seen.reads % kRecordsEvery == 0 ? readRecord(library, place, value) : readValue(library, place, value);
        const auto origin = has ? originOf(value, place.channel, place.boat) : std::nullopt;
        if (origin)
            seen.writers.set(origin->writer % 64);
        else
            ++seen.wrong;
    });
    say(std::to_string(seen.reads) + " " + std::to_string(seen.wrong) + " " + std::to_string(seen.writers.count()) +
        " 0\n");
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
    for (const auto& [channel, boat] : racePlaces())
        library.setZanVar(channel, selfChecking({0, 0}, channel, boat), boat);

    std::vector<Process> racers;
    for (unsigned i = 0; i < kWriters + kReaders; ++i)
        racers.emplace_back(Arguments{"racer", std::to_string(i < kWriters ? i + 1 : 0)});
    for (Process& racer : racers) racer.hear();
    for (Process& racer : racers) racer.say("go");
    sleepMicroseconds(std::int64_t{seconds} * 1'000'000);
    for (Process& racer : racers) racer.say("stop");

    std::uint64_t reads = 0;
    std::uint64_t wrong = 0;
    std::uint64_t writes = 0;
    for (Process& racer : racers) {
        std::istringstream words(racer.hear());
        std::uint64_t itsReads = 0;
        std::uint64_t itsWrong = 0;
        unsigned writersSeen = 0;
        std::uint64_t itsWrites = 0;
        words >> itsReads >> itsWrong >> writersSeen >> itsWrites;
        if (!words || racer.finish() != 0) return 1;
        std::printf("  %llu reads of values by %u writers, %llu writes\n", static_cast<unsigned long long>(itsReads),
                    writersSeen, static_cast<unsigned long long>(itsWrites));
        reads += itsReads;
        wrong += itsWrong;
        writes += itsWrites;
    }
    std::printf("%u processes, %u s: %llu reads, %llu writes, %llu values that nobody wrote\n", kWriters + kReaders,
                seconds, static_cast<unsigned long long>(reads), static_cast<unsigned long long>(writes),
                static_cast<unsigned long long>(wrong));
    return wrong == 0 && reads > 0 && writes > 0 ? 0 : 1;
}

} // namespace tallowmere::torture
