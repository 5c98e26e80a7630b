#pragma once

#include "platform/viewer/MeshData.h"

#include <memory>

namespace pluvarine {

// Decoded meshes shared by content: every file that holds a mesh equal to one already in use
// (the same part in many object files, or many nodes of one file) gets that one, so a project
// of hundreds of downpipes keeps each distinct mesh once, in memory and on the GPU.
// A mesh is forgotten when nothing uses it any more.
class MeshPool {
public:
    // The mesh in use that equals `mesh`, or `mesh` itself, now known to the pool.
    static std::shared_ptr<const MeshData> share(std::shared_ptr<const MeshData> mesh);
    // How many distinct meshes are in use.
    static std::size_t size();
};

} // namespace pluvarine
