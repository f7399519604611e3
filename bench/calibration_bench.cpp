// A spline against GSL's, and a calibrated write against its floor: the same write uncalibrated plus one spline.
#include "calibration/calibration.hpp"
#include "core/channels/area_defaults.hpp"
#include "tests/support/counted_memory.hpp"

#include <benchmark/benchmark.h>
#include <gsl/gsl_spline.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>

using namespace tallowmere;

namespace {

constexpr std::array<double, 7> kSpeeds{0, 5, 10, 15, 20, 25, 30};
constexpr std::array<double, 7> kCorrections{0, -0.125, 0.3, 0.75, 0.1, -0.4, 0.2};

/// 1024 places on the curve: as a speed changes from one reading to the next, or all over the curve.
std::vector<double> placesOf(bool steady) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> anywhere(0.0, 30.0);
    std::vector<double> places(1024);
    for (std::size_t k = 0; k < places.size(); ++k)
        places[k] = steady ? 7.5 + 7.0 * static_cast<double>(k) / 1024.0 : anywhere(random);
    return places;
}

CurveRow sevenKnots() {
    CurveRow row;
    row.rowValue = 0.0;
    for (std::size_t k = 0; k < kSpeeds.size(); ++k) row.knots.push_back({kSpeeds[k], kCorrections[k], NO_VALUE});
    BuildSpline(row);
    return row;
}

void GslSpline(benchmark::State& state) {
    gsl_interp_accel* const accelerator = gsl_interp_accel_alloc();
    gsl_spline* const spline = gsl_spline_alloc(gsl_interp_cspline, kSpeeds.size());
    gsl_spline_init(spline, kSpeeds.data(), kCorrections.data(), kSpeeds.size());
    const std::vector<double> places = placesOf(state.range(0) != 0);
    std::size_t k = 0;
    for (auto _ : state) benchmark::DoNotOptimize(gsl_spline_eval(spline, places[k++ % 1024], accelerator));
    gsl_spline_free(spline);
    gsl_interp_accel_free(accelerator);
}

void OwnSpline(benchmark::State& state) {
    CurveRow row = sevenKnots();
    const std::vector<double> places = placesOf(state.range(0) != 0);
    std::size_t k = 0;
    double y = 0.0;
    for (auto _ : state) {
        EvalSpline(row, places[k++ % 1024], y);
        benchmark::DoNotOptimize(y);
    }
}

/// A store over a section in memory, with "Bsp" in use.
class Boat {
  public:
    Boat() {
        initialiseArea(*area_);
        calibration.ResetCalibrationItem(calibration_item::kBsp);
        CalibrationItem& item = calibration.item(calibration_item::kBsp);
        item.use = 1;
        item.table.rows = {sevenKnots()};
        values.stampTime();
    }
    void calibrate(bool on) { area_->settings[ZAN_BSP].calibrate = on ? 1 : 0; }

  private:
    std::unique_ptr<SharedArea> area_ = std::make_unique<SharedArea>();

  public:
    Calibration calibration{&values};
    ValueStore values{Context{platform::hostPlatform(), area_.get()}, &calibration};
};

void writeSpeeds(benchmark::State& state, bool calibrated) {
    Boat boat;
    boat.calibrate(calibrated);
    const std::vector<double> places = placesOf(state.range(0) != 0);
    std::size_t k = 0;
    const std::size_t before = test::allocationsMade();
    for (auto _ : state) boat.values.store(ZAN_BSP, Record::ofNumber(places[k++ % 1024]), 0, kNoTime);
    state.counters["allocations"] = static_cast<double>(test::allocationsMade() - before);
}

void PlainWrite(benchmark::State& state) {
    writeSpeeds(state, false);
}
void CalibratedWrite(benchmark::State& state) {
    writeSpeeds(state, true);
}

/// The floor of a calibrated write: one evaluation and the write, uncalibrated, of what it gives.
void SplineAndPlainWrite(benchmark::State& state) {
    Boat boat;
    boat.calibrate(false);
    CurveRow row = sevenKnots();
    const std::vector<double> places = placesOf(state.range(0) != 0);
    std::size_t k = 0;
    double correction = 0.0;
    for (auto _ : state) {
        const double speed = places[k++ % 1024];
        EvalSpline(row, speed, correction);
        boat.values.store(ZAN_BSP, Record::ofNumber(speed + correction), 0, kNoTime);
    }
}

// The argument: 1 for steady places, 0 for places all over the curve.
BENCHMARK(GslSpline)->Arg(1)->Arg(0);
BENCHMARK(OwnSpline)->Arg(1)->Arg(0);
BENCHMARK(PlainWrite)->Arg(1)->Arg(0);
BENCHMARK(SplineAndPlainWrite)->Arg(1)->Arg(0);
BENCHMARK(CalibratedWrite)->Arg(1)->Arg(0);

} // namespace

BENCHMARK_MAIN();
