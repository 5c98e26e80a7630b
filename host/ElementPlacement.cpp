#include "host/ElementPlacement.h"

#include "base/Conversions.h"

#include <cmath>
#include <numbers>

namespace pluvarine {

namespace {

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

} // namespace

std::optional<PlacementMatrix> elementPlacement(const PlacementInput& input) {
    const double d = input.roofDirection;
    const double X = input.clickX;
    const double Y = input.clickY;
    const double halfOffset = input.wallOffset / 2000; // metres
    const double gap = 8.0 / 1000;                     // 8 mm on each plan axis
    const double a = radians(-d - 90 - 180);

    std::optional<double> x;
    std::optional<double> y;
    // Four tests, each on its own: the first looks at d itself, the others at |d|, and inside
    // each the signed d gives a2. For 0 <= d <= 360 exactly one holds.
    if (180 <= d && d <= 270) {
        const double a2 = radians(270 - d);
        x = X - halfOffset * std::cos(a2) - gap;
        y = Y + halfOffset * std::sin(a2) + gap;
    }
    if (270 < std::abs(d) && std::abs(d) <= 360) {
        const double a2 = radians(std::abs(d - 270));
        x = X - halfOffset * std::cos(a2) - gap;
        y = Y - halfOffset * std::sin(a2) - gap;
    }
    if (0 <= std::abs(d) && std::abs(d) <= 90) {
        const double a2 = radians(90 - d);
        x = X + halfOffset * std::cos(a2) + gap;
        y = Y - halfOffset * std::sin(a2) - gap;
    }
    if (90 < std::abs(d) && std::abs(d) < 180) {
        const double a2 = radians(std::abs(d - 90));
        x = X + halfOffset * std::cos(a2) + gap;
        y = Y + halfOffset * std::sin(a2) + gap;
    }
    if (!x || !y) {
        return std::nullopt;
    }
    // The assembly's origin lies at half its height.
    const double z = input.heightH / 2000 + 110.0 / 1000 + input.groundLevel / 1000.0;

    PlacementMatrix m;
    m.at(0, 0) = toSingle(std::cos(a));
    m.at(0, 1) = toSingle(std::sin(a));
    m.at(0, 3) = toSingle(*x);
    m.at(1, 0) = toSingle(-std::sin(a));
    m.at(1, 1) = toSingle(std::cos(a));
    m.at(1, 3) = toSingle(*y);
    m.at(2, 2) = 1;
    m.at(2, 3) = toSingle(z);
    m.at(3, 3) = 1;
    return m;
}

} // namespace pluvarine
