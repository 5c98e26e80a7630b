#pragma once

#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"

namespace pluvarine {

// The construction a rebuild composed; None when it built nothing (question asked, overhang
// not a number or negative).
enum class Construction { None, Continuous, Bend42, Bend72, Kink42, Kink72 };

// Runs that construction into the scene (None adds nothing). Stops at the first failure by
// throwing, leaving the parts placed so far.
void buildConstruction(Construction construction, Daten& daten, SceneOperations& scene);

} // namespace pluvarine
