#pragma once

#include "assembly/FlatExtras.h"
#include "platform/viewer/Matrix4d.h"
#include "platform/viewer/MeshData.h"
#include "platform/viewer/SurfaceLook.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvarine {

// One drawable piece of a GLB file: a triangle mesh, its transform from the mesh's own frame
// to the scene frame (the product of the node transforms down to it, turned to z up) and its
// material.
struct GlbItem {
    std::string nodeName;
    std::shared_ptr<const MeshData> mesh;
    Matrix4d transform;
    SurfaceLook look;
    bool auxiliary = false; // marked {"auxiliary": true} (node extras): not drawn, not fitted
};

// What a part file, the base scene or an object file holds.
struct GlbContent {
    std::string sceneName;
    bool auxiliary = false; // the whole file is auxiliary (asset extras)
    std::vector<GlbItem> items;
    FlatExtras sceneExtras; // the scene's extras that are whole numbers or texts
};

} // namespace pluvarine
