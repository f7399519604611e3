// Processes killed at random moments, while they make the section too.
#include "core/channels/section_access.hpp"
#include "core/channels/section_name.hpp"
#include "platform/platform.hpp"
#include "tests/torture/roles.hpp"
#include "tests/torture/self_checking.hpp"
#include "tests/torture/system.hpp"
#include "tests/torture/times.hpp"
#include "tests/torture/user_files.hpp"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace tallowmere::torture {
namespace {

constexpr std::int64_t kLongestVictim = 600'000 * kMillisecond;
constexpr ChannelIndex kOwnChannel = ZAN_USER_20; // written by newcomers only
constexpr int kTries = 1000;

/// Places that the victims use: the compact channels, and a full block's last user channels.
const std::vector<Place>& victimPlaces() {
    static const std::vector<Place> places = compactPlaces(false);
    return places;
}

/// A value that somebody wrote there, or the zero that stands in a section that is being filled.
bool isPlausible(double value, const Place& place) {
    return value == 0.0 || originOf(value, place.channel, place.boat);
}

/// Says 'L' before each loading, 'l' after it: the last word of a killed one tells what it was at.
void attachAndDetach() {
    say("L");
    const Library library;
    say("l");
}

void writeAll(const Library& library, std::uint32_t sequence) {
    for (const auto& [channel, boat] : victimPlaces())
        library.setZanVar(channel, selfChecking({1, sequence}, channel, boat), boat);
}

void readAll(const Library& library) {
    for (const Place& place : victimPlaces()) {
        double value = 0;
        std::uint16_t source = 0;
        if (library.getZanVar(place.channel, &value, place.boat, &source) == 0 || isPlausible(value, place)) continue;
        std::fprintf(stderr, "channel %u of boat %u was %.17g\n", place.channel, place.boat, value);
        say("!");
    }
}

/// The last channel that the library sets to be logged when it comes to channels.xml, but for the very last of all,
/// which is set so at first.
consteval ChannelIndex lastLogged() {
    ChannelIndex channel = kChannelCount - 2;
    while (kCatalogue[channel].logDefault == 0) --channel;
    return channel;
}

/// True when the section, to which this process is attached, has what its maker fills last: the last cell of the user's
/// alternate.csv or, without files, what channels.xml would have changed.
bool isFilled(UserFiles files) {
    const auto look = platform::hostPlatform().lookAtSection(sectionName(), kSharedAreaBytes);
    if (look == nullptr) throw std::runtime_error("no section to look at");
    const auto& area = *reinterpret_cast<const SharedArea*>(look->view());
    if (files == UserFiles::kNone) return readOnce(area.settings[lastLogged()].log) != 0;
    return readOnce(area.alternates.cells[kAlternateRows - 1][kAlternateColumns - 1]) == kLastAlternate;
}

/// The longest of the timed calls.
class Longest {
  public:
    template <class Call> void time(Call call) {
        const Moment took = timeOf(call);
        if (took.wall >= took_.wall) took_ = took;
    }
    [[nodiscard]] const Moment& took() const { return took_; }

  private:
    Moment took_{};
};

class Trial {
  public:
    Trial(UserFiles files, unsigned kills, std::uint32_t seed) : files_(files), kills_(kills), random_(seed) {}

    void run() {
        for (unsigned kill = 0; kill < kills_; ++kill) {
            fillUp();
            sleepMicroseconds(below(2) == 0 ? below(600) : below(6000));
            killOne();
            sendNewcomer(kill);
        }
    }

    void print() {
        std::printf("%s the user's settings and files\n", files_ == UserFiles::kNone ? "without" : "with");
        std::printf("%u kills: %u while attaching, %u of these with nobody else there, so making the section\n", kills_,
                    whileAttaching_, whileMaking_);
        std::printf("%u newcomers ran with a priority that others don't have\n", first_);
        making_.print("attach with nobody else there, so making the section");
        joining_.print("attach with others there");
        loading_.print("loading the library without its attach, after that");
        calls_.print("read or write (the longest of each newcomer)");
        std::printf("newcomers whose first write came back at once: %u, after another attempt because the section "
                    "was being filled: %u; newcomers that met a section filled in part: %u\n",
                    kills_ - again_, again_, partlyFilled_);
    }

  private:
    struct Victim {
        Process process;
        std::string last; // of what it said
    };

    unsigned below(unsigned end) { return std::uniform_int_distribution<unsigned>(0, end - 1)(random_); }

    void fillUp() {
        static const char* const roles[] = {"attacher", "attacher", "writer", "reader"};
        const std::size_t wanted = 1 + below(3);
        while (victims_.size() < wanted)
            victims_.push_back(std::make_unique<Victim>(Victim{Process({"victim", roles[below(4)]}), {}}));
        for (const auto& victim : victims_) listen(*victim);
    }

    static void listen(Victim& victim) {
        const std::string said = victim.process.overheard();
        if (said.find('!') != std::string::npos) throw std::runtime_error("a reader met a value that nobody wrote");
        if (!said.empty()) victim.last = said.substr(said.size() - 1);
    }

    void killOne() {
        const auto chosen = victims_.begin() + below(static_cast<unsigned>(victims_.size()));
        Victim& victim = **chosen;
        if (!victim.process.kill()) throw std::runtime_error("a victim ended by itself");
        listen(victim);
        if (victim.last == "L") {
            ++whileAttaching_;
            if (victims_.size() == 1) ++whileMaking_;
        }
        victims_.erase(chosen);
    }

    void sendNewcomer(unsigned kill) {
        const bool alone = victims_.empty();
        Process newcomer({"newcomer", std::to_string(kill), files_ == UserFiles::kNone ? "none" : "usual"});
        std::istringstream words(newcomer.hear());
        std::string verdict;
        Moment attach;
        Moment call;
        Moment loading;
        int tries = 0;
        int filled = 0;
        int first = 0;
        words >> verdict >> attach >> call >> loading >> tries >> filled >> first;
        if (!words || verdict != "ok") throw std::runtime_error("kill " + std::to_string(kill) + ": " + words.str());
        if (newcomer.finish() != 0) throw std::runtime_error("a newcomer ended with an error");
        if (alone && filled == 0) throw std::runtime_error("a newcomer did not fill the section that it made");
        (alone ? making_ : joining_).add(attach);
        loading_.add(loading);
        calls_.add(call);
        if (tries > 1) ++again_;
        if (filled == 0) ++partlyFilled_;
        if (first != 0) ++first_;
    }

    UserFiles files_;
    unsigned kills_;
    std::mt19937 random_;
    std::vector<std::unique_ptr<Victim>> victims_;
    Times making_;
    Times joining_;
    Times loading_;
    Times calls_;
    unsigned whileAttaching_ = 0;
    unsigned whileMaking_ = 0;
    unsigned again_ = 0;
    unsigned partlyFilled_ = 0;
    unsigned first_ = 0;
};

void runHalf(UserFiles files, unsigned kills, std::uint32_t seed) {
    const Surroundings surroundings(files);
    Trial trial(files, kills, seed);
    trial.run();
    trial.print();
}

} // namespace

int beVictim(const Arguments& arguments) {
    const std::string& role = arguments.at(0);
    const std::int64_t start = Moment::now().wall;
    const auto goesOn = [start] { return Moment::now().wall - start < kLongestVictim; };
    if (role == "attacher") {
        while (goesOn()) attachAndDetach();
        return 0;
    }
    say("L");
    const Library library;
    say("l");
    for (std::uint32_t sequence = 0; goesOn(); ++sequence)
        role == "writer" ? writeAll(library, sequence) : readAll(library);
    return 0;
}

int beNewcomer(const Arguments& arguments) {
    const auto number = static_cast<std::uint32_t>(std::stoul(arguments.at(0)));
    const UserFiles files = arguments.at(1) == "none" ? UserFiles::kNone : UserFiles::kUsual;
    const bool first = comeFirst();
    std::unique_ptr<Library> library;
    const Moment attach = timeOf([&] { library = std::make_unique<Library>(); });
    Longest call;
    const double mine = selfChecking({2, number}, kOwnChannel, 0);
    double value = 0;
    double setting = 0;
    std::uint16_t source = 0;
    call.time([&] { library->getSysVar(0, &setting); });
    call.time([&] { library->getZanVar(ZAN_BSP, &value, 0, &source); });
    // A section that is just being filled may lose a value to its defaults.
    int tries = 0;
    bool back = false;
    bool stored = true;
    bool filled = true;
    while (!back && stored && tries < kTries) {
        if (tries > 0) sleepMicroseconds(1000);
        call.time([&] { stored = library->setZanVar(kOwnChannel, mine, 0) != 0; });
        call.time([&] { back = library->getZanVar(kOwnChannel, &value, 0, &source) != 0 && value == mine; });
        if (tries++ == 0) filled = back && isFilled(files);
    }
    std::unique_ptr<Module> late;
    const Moment loading = timeOf([&] { late = std::make_unique<Module>(TALLOWMERE_LATE_LIBRARY); });
    std::ostringstream words;
    words << (back     ? "ok "
              : stored ? "lost "
                       : "refused ")
          << attach << call.took() << loading << tries << ' ' << filled << ' ' << first << '\n';
    say(words.str());
    return 0;
}

int runKills(unsigned kills, std::uint32_t seed) {
    std::printf("seed %u\n", seed);
    std::fflush(stdout);
    runHalf(UserFiles::kNone, kills / 2, seed);
    runHalf(UserFiles::kUsual, kills - kills / 2, seed);
    return 0;
}

} // namespace tallowmere::torture
