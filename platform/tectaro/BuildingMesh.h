#pragma once

#include "platform/tectaro/Building.h"
#include "platform/viewer/MeshData.h"

#include <memory>

namespace pluvarine {

// Triangle meshes of the building for the 3D view, in world metres (z up), flat-shaded.
class BuildingMesh {
public:
    // The wall as one prism per segment, from its base level up by its height.
    static std::shared_ptr<MeshData> wall(const Wall& wall);
    // The roof face as a slab: its plane on top, `thickness` below it, closed at the edges.
    static std::shared_ptr<MeshData> roofFace(const RoofFace& face, double thickness);
};

} // namespace pluvarine
