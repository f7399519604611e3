// The last minutes before a start, in C++: time to the gun, to the line, time to burn, distance below the line.
//
//     start_countdown [--interval SECONDS] [--count ROUNDS]
//
// The values come from a race program that writes the start channels; this one only shows them. "-" is a value that
// is not there, "stale" one that nobody has written for longer than its channel's time-out: a countdown that has
// stopped must not look like one that runs. Nor must one that is played from a recording: it begins with "REPLAY".
#include <tallowmere/view.hpp>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <thread>

namespace {

using tallowmere::view::Freshness;
using tallowmere::view::Group;
using tallowmere::view::Value;
using tallowmere::view::View;

volatile std::sig_atomic_t stopped = 0;

struct Options {
    double interval = 1.0;   // seconds
    unsigned long count = 0; // rounds; 0: without end
};

std::optional<Options> parse(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; i += 2) {
        const std::string name = arguments[i];
        if (i + 1 == count) return std::nullopt;
        char* end = nullptr;
        if (name == "--interval") {
            options.interval = std::strtod(arguments[i + 1], &end);
            if (!(options.interval >= 0.01 && options.interval <= 3600)) return std::nullopt;
        } else if (name == "--count") {
            options.count = std::strtoul(arguments[i + 1], &end, 10);
            if (options.count == 0) return std::nullopt;
        } else {
            return std::nullopt;
        }
        if (*end != '\0') return std::nullopt;
    }
    return options;
}

/// Time spans are kept as days. Empty for what is not there, stale, or no time that a start could have.
std::optional<double> secondsOf(const Value& value) {
    constexpr double kSecondsPerDay = 86400;
    const std::optional<double> days = value.current();
    return days && std::fabs(*days) < 1 ? std::optional(*days * kSecondsPerDay) : std::nullopt;
}

std::string missing(const Value& value) {
    return value.freshness() == Freshness::Stale ? "stale" : "-";
}

/// Minutes and seconds, with a minus once it is past.
std::string timeText(const Value& value) {
    const std::optional<double> seconds = secondsOf(value);
    if (!seconds) return missing(value);
    const long whole = std::lround(*seconds);
    char text[32];
    std::snprintf(text, sizeof text, "%s%ld:%02ld", whole < 0 ? "-" : "", std::labs(whole) / 60, std::labs(whole) % 60);
    return text;
}

/// Distances to a line are kept in nautical miles.
std::string metresText(const Value& value) {
    constexpr double kMetresPerMile = 1852;
    const std::optional<double> miles = value.current();
    if (!miles || !(std::fabs(*miles) < 100)) return missing(value);
    return std::to_string(std::lround(*miles * kMetresPerMile)) + " m";
}

std::string knotsText(const Value& value) {
    const std::optional<double> knots = value.current();
    if (!knots || !(std::fabs(*knots) < 1000)) return missing(value);
    char text[32];
    std::snprintf(text, sizeof text, "%.2f kt", *knots);
    return text;
}

/// Tells the moment at which the countdown passes zero.
class Gun {
  public:
    bool fires(const Value& timeToGun) {
        const std::optional<double> seconds = secondsOf(timeToGun);
        const bool fires = seconds && last_ && *last_ > 0 && *seconds <= 0;
        last_ = seconds;
        return fires;
    }

  private:
    std::optional<double> last_;
};

void show(const View& view, Gun& gun) {
    // Of one moment, so that the times belong together.
    const Group group = view.read({ZAN_TMTOGUN, ZAN_TMTOLN, ZAN_BURN, ZAN_BELOWLN, ZAN_BSP});
    const Value& toGun = group.values[0];
    std::printf("%sgun %s   line %s   burn %s   below line %s   speed %s%s\n", view.isReplay() ? "REPLAY   " : "",
                timeText(toGun).c_str(), timeText(group.values[1]).c_str(), timeText(group.values[2]).c_str(),
                metresText(group.values[3]).c_str(), knotsText(group.values[4]).c_str(),
                gun.fires(toGun) ? "   GUN" : "");
    std::fflush(stdout);
}

void run(const Options& options) {
    View view;
    Gun gun;
    auto next = std::chrono::steady_clock::now();
    const auto interval = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(options.interval));
    for (unsigned long round = 1; stopped == 0; ++round) {
        view.refresh();
        show(view, gun);
        if (round == options.count) break;
        std::this_thread::sleep_until(next += interval);
    }
}

} // namespace

int main(int count, char** arguments) {
    const std::optional<Options> options = parse(count, arguments);
    if (!options) {
        std::fprintf(stderr, "usage: %s [--interval SECONDS] [--count ROUNDS]\n", arguments[0]);
        return 2;
    }
    std::signal(SIGINT, [](int) { stopped = 1; });
    try {
        run(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", arguments[0], error.what());
        return 1;
    }
    return 0;
}
