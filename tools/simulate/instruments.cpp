#include "tools/simulate/instruments.hpp"

#include "tools/nmea/encode.hpp"
#include "tools/simulate/start_line.hpp"

#include <array>
#include <chrono>
#include <cstdio>

namespace tallowmere::simulate {
namespace {

using nmea::decimal;

struct DateAndTime {
    std::string date; // ddmmyy
    std::string time; // hhmmss.ss
    std::uint32_t second;
};

DateAndTime split(std::int64_t ticks) {
    using namespace std::chrono;
    using Ticks = duration<std::int64_t, std::ratio<1, 10'000'000>>;
    constexpr sys_days kTickZero = 1601y / January / 1d;
    const auto day = floor<days>(Ticks(ticks));
    const year_month_day date(kTickZero + day);
    const hh_mm_ss time(floor<milliseconds>(Ticks(ticks) - day));
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%02u%02u%02d", static_cast<unsigned>(date.day()),
                  static_cast<unsigned>(date.month()), static_cast<int>(date.year()) % 100);
    DateAndTime result{.date = text.data(), .time = {}, .second = static_cast<std::uint32_t>(time.seconds().count())};
    std::snprintf(text.data(), text.size(), "%02d%02d%02d.%02d", static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                  static_cast<int>(time.subseconds().count() / 10));
    result.time = text.data();
    return result;
}

class Lines {
  public:
    void add(const std::string& body) { text_ += nmea::makeLine('$', body); }
    void add(const nmea::PositionReport& report, char channel) { text_ += nmea::makeVdm(report, channel); }
    [[nodiscard]] std::string take() { return std::move(text_); }

  private:
    std::string text_;
};

/// A bearing that is never written as 360.0.
std::string bearingText(double degrees) {
    std::string text = decimal(bearing360(degrees), 1, 5);
    return text == "360.0" ? "000.0" : text;
}

std::string placeFields(const Place& place) {
    return nmea::latitudeFields(place.latitude) + "," + nmea::longitudeFields(place.longitude);
}

void addPosition(Lines& lines, const Race& race, const DateAndTime& now) {
    const Boat& boat = race.boat(0);
    const Place place = race.placeOf(boat.position());
    const Vector ground = boat.overGround(race.surroundings());
    const std::string position = placeFields(place);
    lines.add("GPRMC," + now.time + ",A," + position + "," + decimal(ground.length(), 2) + "," +
              bearingText(ground.direction()) + "," + now.date + "," + decimal(race.magneticVariation(), 1) + ",E,A");
    lines.add("GPGGA," + now.time + "," + position + ",1,11,0.8,2.1,M,48.9,M,,");
}

void addHeadingAndWater(Lines& lines, const Race& race) {
    const Boat& boat = race.boat(0);
    const double magnetic = boat.heading() - race.magneticVariation();
    lines.add("IIHDG," + bearingText(magnetic) + ",,," + decimal(race.magneticVariation(), 1) + ",E");
    lines.add("IIVHW," + bearingText(boat.heading()) + ",T," + bearingText(magnetic) + ",M," +
              decimal(boat.boatSpeed(), 2) + ",N," + decimal(boat.boatSpeed() * 1.852, 2) + ",K");
    lines.add("IIROT," + decimal(boat.turnRate() * 60.0, 1) + ",A");
    lines.add("IIRSA," + decimal(boat.rudder(), 1) + ",A,,V");
    lines.add("IIXDR,A," + decimal(boat.heel(), 1) + ",D,HEEL");
    const double depth = race.depthAt(boat.position());
    lines.add("IIDBT," + decimal(depth / 0.3048, 1) + ",f," + decimal(depth, 1) + ",M," + decimal(depth / 1.8288, 1) +
              ",F");
}

void addWind(Lines& lines, const Race& race) {
    const Boat& boat = race.boat(0);
    const Vector apparent = boat.apparentWind(race.surroundings());
    const Vector wind = Boat::trueWind(race.surroundings());
    const double from = wind.direction() + 180.0;
    lines.add("IIMWV," + bearingText(boat.angleOffBow(apparent)) + ",R," + decimal(apparent.length(), 2) + ",N,A");
    lines.add("IIMWV," + bearingText(boat.angleOffBow(wind)) + ",T," + decimal(wind.length(), 2) + ",N,A");
    lines.add("IIMWD," + bearingText(from) + ",T," + bearingText(from - race.magneticVariation()) + ",M," +
              decimal(wind.length(), 2) + ",N," + decimal(wind.length() * kMetresPerSecondPerKnot, 2) + ",M");
}

void addSlowOnes(Lines& lines, const Race& race) {
    constexpr double kLogBefore = 4127.3; // nautical miles sailed before this day
    const double today = race.boat(0).distanceSailed();
    lines.add("IIMTW," + decimal(race.seaTemperature(), 1) + ",C");
    lines.add("IIVLW," + decimal(kLogBefore + today, 2) + ",N," + decimal(today, 2) + ",N");
}

/// In sentences of the simulator's own (docs/feed.md), for the standard has none.
void addStart(Lines& lines, const Race& race) {
    constexpr double kSecondsAfterGun = 60.0; // for which it is of interest
    const StartLine line = startLineOf(race);
    const StartApproach approach = startApproachOf(race);
    if (approach.secondsToGun < -kSecondsAfterGun) return;
    lines.add("PTLML," + placeFields(line.portEnd) + "," + placeFields(line.starboardEnd) + "," +
              bearingText(line.squareWind));
    const bool started = approach.secondsToGun <= 0.0 && approach.metresBelow < 0.0;
    const auto field = [&](double value) { return "," + (started ? std::string() : decimal(value, 1)); };
    lines.add("PTLMT," + decimal(approach.secondsToGun, 1) + field(approach.secondsToLine) +
              field(approach.secondsToBurn) + field(approach.metresBelow) + field(approach.metresToLine) +
              field(approach.metresBelowAtGun) + "," + decimal(line.biasDegrees, 1) + "," +
              decimal(line.biasMetres, 1));
}

/// The two biggest rivals carry the larger kind of transponder, which reports more often.
bool isClassA(std::size_t rival) noexcept {
    return rival <= 2;
}

void addRival(Lines& lines, const Race& race, std::size_t rival, std::uint32_t second) {
    const Boat& boat = race.boat(rival);
    const Place place = race.placeOf(boat.position());
    const Vector ground = boat.overGround(race.surroundings());
    nmea::PositionReport report{.type = isClassA(rival) ? 1 : 18, .mmsi = mmsiOf(rival)};
    report.latitude = place.latitude;
    report.longitude = place.longitude;
    report.sog = ground.length();
    report.cog = ground.direction();
    if (rival % 3 != 0) report.heading = bearing360(boat.heading()); // some have no compass connected
    report.second = second;
    lines.add(report, rival % 2 == 0 ? 'A' : 'B');
}

} // namespace

std::uint32_t mmsiOf(std::size_t rival) noexcept {
    return 225'990'100U + static_cast<std::uint32_t>(rival) * 11U;
}

std::string linesOf(const Race& race, std::int64_t ticks) {
    Lines lines;
    const DateAndTime now = split(ticks);
    const auto second = static_cast<std::size_t>(std::llround(race.time()));
    addPosition(lines, race, now);
    addHeadingAndWater(lines, race);
    addWind(lines, race);
    addStart(lines, race);
    if (second % 5 == 0) addSlowOnes(lines, race);
    for (std::size_t rival = 1; rival < race.boatCount(); ++rival)
        if ((second + rival) % (isClassA(rival) ? 3 : 5) == 0) addRival(lines, race, rival, now.second);
    return lines.take();
}

} // namespace tallowmere::simulate
