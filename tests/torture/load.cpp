// A full house: many processes attached, every boat and compact channel written in turn, others coming and going.
#include "core/ccore.hpp"
#include "tests/torture/roles.hpp"
#include "tests/torture/self_checking.hpp"
#include "tests/torture/system.hpp"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace tallowmere::torture {
namespace {

constexpr unsigned kFeeder = 1;              // the writer that the values name
constexpr std::int64_t kLookEvery = 500'000; // microseconds
constexpr std::int64_t kComeEvery = 100'000;
constexpr std::int64_t kWarmUp = 2'000'000;
constexpr std::uint64_t kRoomToBreathe = 64 * 1024; // bytes that a process may grow by; a leak is more

/// Calls `check` with every value; how many it refused. All boats but 1 have a clock too.
template <class Check> unsigned countWrong(const Library& library, Check check) {
    unsigned wrong = 0;
    double value = 0;
    std::uint16_t source = 0;
    for (const Place& place : compactPlaces(true))
        if (library.getZanVar(place.channel, &value, place.boat, &source) == 0 || !check(value, place)) ++wrong;
    for (BoatIndex boat = 0; boat < kBoatCount; ++boat)
        if (boat != 1 && (library.getZanVar(ZAN_TIME, &value, boat, &source) == 0 || value == 0.0)) ++wrong;
    return wrong;
}

unsigned countForeign(const Library& library) {
    return countWrong(library, [](double value, const Place& place) {
        return originOf(value, place.channel, place.boat).has_value();
    });
}

unsigned countNotOfRound(const Library& library, std::uint32_t round) {
    return countWrong(library, [round](double value, const Place& place) {
        return value == selfChecking({kFeeder, round}, place.channel, place.boat);
    });
}

/// Writes everything once; how many values did not read back as written.
unsigned feedRound(const Library& library, const std::vector<Place>& places, std::uint32_t round) {
    unsigned lost = 0;
    for (const auto& [channel, boat] : places) {
        const double written = selfChecking({kFeeder, round}, channel, boat);
        double value = 0;
        std::uint16_t source = 0;
        if (library.setZanVar(channel, written, boat) == 0 || library.getZanVar(channel, &value, boat, &source) == 0 ||
            value != written)
            ++lost;
    }
    return lost;
}

/// Least of some samples a few milliseconds apart: one who comes and goes is then away, and handles that the system
/// holds during a call, as Wine does, are let go.
Usage quietUsage(const Process& process) {
    Usage least = process.usage();
    for (int i = 0; i < 20; ++i) {
        sleepMicroseconds(7'000);
        const Usage usage = process.usage();
        least.privateBytes = std::min(least.privateBytes, usage.privateBytes);
        least.residentBytes = std::min(least.residentBytes, usage.residentBytes);
        least.handles = std::min(least.handles, usage.handles);
    }
    return least;
}

/// What a process holds that held so much before.
Usage laterUsage(const Process& process, const Usage& before) {
    const Usage usage = process.usage();
    return usage.handles > before.handles ? quietUsage(process) : usage;
}

std::uint64_t growth(std::uint64_t before, std::uint64_t after) {
    return after > before ? after - before : 0;
}

/// What the processes of one kind held at first and at last.
class Row {
  public:
    void add(const Usage& first, const Usage& last) {
        note(resident_, first.residentBytes / 1024, last.residentBytes / 1024);
        note(private_, first.privateBytes / 1024, last.privateBytes / 1024);
        note(handles_, first.handles, last.handles);
        if (growth(first.privateBytes, last.privateBytes) > kRoomToBreathe || last.handles > first.handles)
            flat_ = false;
        if (last.privateBytes == 0 || last.handles == 0) throw std::runtime_error("the system does not tell");
    }
    bool print(const char* who) const {
        std::printf("%-24s", who);
        for (const Range& range : {resident_, private_, handles_})
            std::printf(" %8llu %8llu %8llu", ull(range.first), ull(range.last), ull(range.growth));
        std::printf("  %s\n", flat_ ? "flat" : "GREW");
        return flat_;
    }

  private:
    struct Range {
        std::uint64_t first = 0; // the largest
        std::uint64_t last = 0;
        std::uint64_t growth = 0; // of one process
    };
    static void note(Range& range, std::uint64_t first, std::uint64_t last) {
        range.first = std::max(range.first, first);
        range.last = std::max(range.last, last);
        range.growth = std::max(range.growth, growth(first, last));
    }
    static unsigned long long ull(std::uint64_t number) { return number; }

    Range resident_;
    Range private_;
    Range handles_;
    bool flat_ = true;
};

std::uint64_t hearNumber(Process& process) {
    return std::stoull(process.hear());
}

} // namespace

int beSitter(const Arguments&) {
    const Library library;
    unsigned foreign = 0;
    say("ready\n");
    for (;;) {
        if (!inputWaits()) {
            sleepMicroseconds(kLookEvery);
            foreign += countForeign(library);
            continue;
        }
        const auto round = readLine();
        if (!round) return 0;
        say(std::to_string(foreign + countNotOfRound(library, static_cast<std::uint32_t>(std::stoul(*round)))) + "\n");
    }
}

int beFeeder(const Arguments&) {
    const Library library;
    const std::vector<Place> places = compactPlaces(true);
    std::uint32_t round = 0;
    std::uint64_t lost = feedRound(library, places, round);
    say("ready\n");
    if (!readLine()) return 1;
    while (!inputWaits()) lost += feedRound(library, places, ++round);
    say(std::to_string(lost) + "\n" + std::to_string(round) + "\n");
    return readLine() ? 0 : 1;
}

int beComer(const Arguments&) {
    std::uint64_t visits = 0;
    std::uint64_t foreign = 0;
    say("ready\n");
    for (; !inputWaits(); ++visits) {
        {
            const Library library;
            foreign += countForeign(library);
        }
        sleepMicroseconds(kComeEvery);
    }
    say(std::to_string(foreign) + "\n" + std::to_string(visits) + "\n");
    return readLine() ? 0 : 1;
}

int runLoad(unsigned processes, unsigned seconds) {
    const Surroundings surroundings;
    CCore host(false);
    if (host.area() == nullptr) throw std::runtime_error("no section");
    host.system().setInteger(system_integer::kFixMode, kFixesFromClients);

    Process feeder({"feeder"});
    feeder.hear();
    std::vector<Process> sitters;
    for (unsigned i = 0; i < processes; ++i) sitters.emplace_back(Arguments{"sitter"});
    for (Process& sitter : sitters) sitter.hear();
    Process comer({"comer"});
    comer.hear();
    feeder.say("go");
    sleepMicroseconds(kWarmUp);

    std::vector<Usage> before;
    for (const Process& sitter : sitters) before.push_back(sitter.usage());
    const Usage feederBefore = quietUsage(feeder);
    const Usage comerBefore = quietUsage(comer);
    sleepMicroseconds(std::int64_t{seconds} * 1'000'000);
    Row sitting;
    for (std::size_t i = 0; i < sitters.size(); ++i) sitting.add(before[i], laterUsage(sitters[i], before[i]));
    Row feeding;
    feeding.add(feederBefore, quietUsage(feeder));
    Row coming;
    coming.add(comerBefore, quietUsage(comer));

    comer.say("stop");
    const std::uint64_t foreign = hearNumber(comer);
    const std::uint64_t visits = hearNumber(comer);
    feeder.say("stop");
    const std::uint64_t lost = hearNumber(feeder);
    const std::uint64_t rounds = hearNumber(feeder);
    for (Process& sitter : sitters) sitter.say(std::to_string(rounds));
    std::uint64_t wrong = foreign;
    for (Process& sitter : sitters) wrong += hearNumber(sitter);

    const std::size_t places = compactPlaces(true).size();
    std::printf("%u processes attached, one writing, one coming and going (%llu visits), %u s\n", processes,
                static_cast<unsigned long long>(visits), seconds);
    std::printf(
        "%llu rounds over %zu values of %u boats, the clock beside them: %llu writes, %llu not read back as written\n",
        static_cast<unsigned long long>(rounds), places, unsigned{kBoatCount},
        static_cast<unsigned long long>(rounds * places), static_cast<unsigned long long>(lost));
    std::printf("values that nobody wrote, or not the last at the end: %llu\n\n",
                static_cast<unsigned long long>(wrong));
    std::printf("%-24s %26s %26s %26s\n", "", "memory in use, KiB", "of its own, KiB", "descriptors or handles");
    std::printf("%-24s", "the most of one");
    for (int i = 0; i < 3; ++i) std::printf(" %8s %8s %8s", "first", "last", "growth");
    std::printf("\n");
    const bool sittersFlat = sitting.print("attached and reading");
    const bool feederFlat = feeding.print("writing");
    const bool comerFlat = coming.print("coming and going");
    return lost == 0 && wrong == 0 && rounds > 0 && visits > 0 && sittersFlat && feederFlat && comerFlat ? 0 : 1;
}

} // namespace tallowmere::torture
