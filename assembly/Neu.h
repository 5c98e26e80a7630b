#pragma once

#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"

namespace pluvarine {

// Resets the preview: modelBuilt := false, the base scene workFolder + "/main.v3o" is loaded
// again (every earlier object id loses its meaning) and the previous host object file
// oldObjectFile is deleted when it exists. A failing step throws and ends the reset there.
void Neu(Daten& daten, SceneOperations& scene);

} // namespace pluvarine
