#pragma once

#include "platform/viewer/MeshData.h"
#include "platform/viewer/SurfaceLook.h"

#include <array>
#include <string>
#include <vector>

namespace pluvarine::test {

// A box centred on the origin with flat normals (24 vertices, 12 triangles).
MeshData boxMesh(double sx, double sy, double sz);

// One node of a GLB written with tinygltf directly, independent of the viewer's own writer.
struct TestNode {
    MeshData mesh;
    SurfaceLook look;
    std::vector<double> matrix;      // empty: identity (or TRS below)
    std::vector<double> translation; // used when matrix is empty
    std::vector<double> rotation;    // quaternion x, y, z, w
    std::vector<double> scale;
    bool auxiliary = false;
    bool withNormals = true;
    std::vector<int> children; // indices into the node list
    bool root = true;
};

void writeTestGlb(const std::string& path, const std::vector<TestNode>& nodes,
                  bool assetAuxiliary = false, const std::string& sceneName = {});

// A part file holding one box of the given size (metres) centred on the reference point.
void writeBoxPart(const std::string& path, double sx, double sy, double sz,
                  const SurfaceLook& look = {}, bool auxiliary = false);

void writeText(const std::string& path, const std::string& text);
std::string readBytes(const std::string& path);

} // namespace pluvarine::test
