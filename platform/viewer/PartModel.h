#pragma once

#include "platform/viewer/Box3.h"
#include "platform/viewer/GlbContent.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvarine {

// One triangle mesh of a part in the part's own frame, with the part's own look for it.
struct PartPiece {
    std::shared_ptr<const MeshData> mesh;
    SurfaceLook look;
};

// The content of a part file (or of the base scene) ready to be placed: every mesh already in
// the part's frame, whose origin is the part's reference point.
struct PartModel {
    std::string path;
    std::string name;
    std::vector<PartPiece> pieces;
    bool auxiliary = false; // not drawn and not fitted (the dummy)
    Box3 bounds;            // of the pieces, in the part's frame

    // Bakes the node transforms of the file into the meshes. Auxiliary items of a file that
    // also has drawn ones are left out; a file of auxiliary items only is an auxiliary part.
    static std::shared_ptr<const PartModel> fromContent(const std::string& path,
                                                        const GlbContent& content);
};

} // namespace pluvarine
