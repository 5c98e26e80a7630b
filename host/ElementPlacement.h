#pragma once

#include "host/PlacementMatrix.h"

#include <optional>

namespace pluvarine {

// What the placement of an inserted downpipe is made from.
struct PlacementInput {
    double roofDirection = 0; // d, degrees
    float clickX = 0;         // X, host metres
    float clickY = 0;         // Y, host metres
    float groundLevel = 0;    // Z, mm
    double wallOffset = 0;    // W, mm
    double heightH = 0;       // H, mm
};

// The placement matrix for the element: a turn about the vertical by -d - 270 degrees and the
// reference point half the wall offset plus 8 mm away from the picked point, at half the height
// plus 110 mm above the ground level. Directions outside the four cases (e.g. -200 or 400) give
// no matrix: the element stays as the host created it.
std::optional<PlacementMatrix> elementPlacement(const PlacementInput& input);

} // namespace pluvarine
