#pragma once

#include "data/generator/PartModel.h"

#include <string>

namespace pluvarine {

// Turns part models into glTF 2.0 binary files (GLB) as the viewer reads them: metres, one
// scene with one node per part that turns the mesh from the scene frame (z up) to glTF's +Y up,
// one triangle mesh with POSITION and NORMAL, one metallic-roughness material (grey plastic).
// Extras are flat: the asset's say what the file is, the node's name the part's openings.
class GlbWriter {
public:
    static std::string partFile(const PartModel& part);
    // The base scene: no parts, only an auxiliary marker (a scene without a mesh is refused by
    // some glTF readers).
    static std::string baseScene(const PartModel& marker);
};

} // namespace pluvarine
