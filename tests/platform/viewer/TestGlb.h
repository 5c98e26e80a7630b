#pragma once

#include "platform/viewer/MeshData.h"
#include "platform/viewer/SurfaceLook.h"

#include <string>

namespace pluvarine::test {

// A box centred on the origin with flat normals (24 vertices, 12 triangles).
MeshData boxMesh(double sx, double sy, double sz);

// A part file of one box (metres) centred on the reference point, written with tinygltf
// directly, independent of the viewer's own writer.
void writeBoxPart(const std::string& path, double sx, double sy, double sz,
                  const SurfaceLook& look = {}, bool auxiliary = false);

void writeText(const std::string& path, const std::string& text);
std::string readBytes(const std::string& path);

} // namespace pluvarine::test
