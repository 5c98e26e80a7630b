#pragma once

#include "assembly/BendAngle.h"
#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"

namespace pluvarine {

// The small-overhang offset: two kink parts with an inclined pipe between them, the vertical
// pipe on the wall, standpipe, outlet, cap and clamps, then UpdateView. The 42-degree member
// places the outlet first. Stops at the first failure by throwing, leaving the parts placed
// so far.
void buildKink(Daten& daten, SceneOperations& scene, BendAngle angle);

} // namespace pluvarine
