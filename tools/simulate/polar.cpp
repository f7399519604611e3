#include "tools/simulate/polar.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tallowmere::simulate {
namespace {

struct Point {
    double angle;
    double share; // of the speed that the wind allows on a beam reach
};

constexpr Point kShape[] = {{0.0, 0.0},    {20.0, 0.05},  {30.0, 0.45},  {38.0, 0.69},  {45.0, 0.78},
                            {60.0, 0.89},  {75.0, 0.96},  {90.0, 1.0},   {110.0, 1.04}, {125.0, 1.02},
                            {140.0, 0.95}, {150.0, 0.88}, {165.0, 0.76}, {180.0, 0.70}};

double shapeAt(double angle) noexcept {
    const Point* const above = std::upper_bound(std::begin(kShape), std::end(kShape), angle,
                                                [](double wanted, const Point& point) { return wanted < point.angle; });
    if (above == std::end(kShape)) return kShape[std::size(kShape) - 1].share;
    if (above == std::begin(kShape)) return kShape[0].share;
    const Point& below = *(above - 1);
    return below.share + (above->share - below.share) * (angle - below.angle) / (above->angle - below.angle);
}

} // namespace

double polarSpeed(double trueWindAngle, double trueWindSpeed) noexcept {
    constexpr double kHullSpeed = 9.2;   // knots
    constexpr double kWindToReach = 7.5; // knots of wind for 63 percent of it
    return kHullSpeed * (1.0 - std::exp(-std::max(0.0, trueWindSpeed) / kWindToReach)) *
           shapeAt(std::abs(trueWindAngle));
}

} // namespace tallowmere::simulate
