#pragma once

#include "platform/viewer/GlbContent.h"

#include <string>

namespace pluvarine {

// Reads a glTF 2.0 binary file (part files, the base scene, the object files SaveScene writes)
// into triangle meshes with their transforms into the scene frame (z up; the file is +Y up, see
// GltfAxes.h) and metallic-roughness materials. Only what the
// viewer draws is read: triangle primitives with positions, normals (computed when absent) and
// indices, and material factors (textures are ignored).
class GlbReader {
public:
    // Throws RuntimeError (ViewerError) when the file is missing or is not a readable GLB.
    static GlbContent readFile(const std::string& path);
    static GlbContent readMemory(const std::string& bytes, const std::string& nameForErrors);
};

} // namespace pluvarine
