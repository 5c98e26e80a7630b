#pragma once

#include "data/generator/PartModel.h"

#include <vector>

namespace pluvarine {

// The catalogue's parts, each modelled from its nominal sizes so that it has the effective sizes
// the constructions rely on. Millimetres, scene frame, reference point at the origin.
namespace PartShapes {

PartModel pipe();      // Fallrohr_100_500
PartModel standpipe(); // Standrohr_125_500
PartModel outlet();    // Reinhangestutzen_100_218
PartModel cap();       // Abdeckkappe_100_125
PartModel clamp();     // Rohrschelle_100
// Bogen_100_<degrees>_L (upper, `upper` true) and _R (lower); degrees 72 or 42.
PartModel bend(int degrees, bool upper);
PartModel kink(int degrees); // Knick_100_<degrees>
PartModel dummy();
// The base scene's marker: an auxiliary 1 mm cube.
PartModel baseMarker();

std::vector<PartModel> catalogue();

} // namespace PartShapes

} // namespace pluvarine
