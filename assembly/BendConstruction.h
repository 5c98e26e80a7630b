#pragma once

#include "assembly/BendAngle.h"
#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"

namespace pluvarine {

// The downpipe led back to the wall with two pipe bends ("L" above, "R" at the wall) and an
// inclined pipe between them, then the vertical pipe, standpipe, outlet, cap and clamps, and
// UpdateView. Stops at the first failure by throwing, leaving the parts placed so far.
void buildBend(Daten& daten, SceneOperations& scene, BendAngle angle);

} // namespace pluvarine
