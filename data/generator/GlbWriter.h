#pragma once

#include "data/generator/PartModel.h"

#include <string>

namespace pluvarine {

// Turns part models into glTF 2.0 binary files (GLB) as the viewer reads them: metres, in the
// scene frame itself (z up, no y-up conversion), one scene with one root node per part, one
// triangle mesh with POSITION and NORMAL, one metallic-roughness material (grey plastic).
class GlbWriter {
public:
    static std::string partFile(const PartModel& part);
    // The base scene: no parts, only a marker node.
    static std::string baseScene();
};

} // namespace pluvarine
