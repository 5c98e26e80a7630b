#pragma once

#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"

namespace pluvarine {

// The straight downpipe: outlet, pipe down to the ground, the dummy, standpipe, cover cap and
// clamps up the wall, then UpdateView. Adds to the scene as it is; stops at the first failure
// (viewer error, clamp spacing 0, clamp count beyond 16 bits) by throwing, leaving the parts
// placed so far.
void buildContinuous(Daten& daten, SceneOperations& scene);

} // namespace pluvarine
