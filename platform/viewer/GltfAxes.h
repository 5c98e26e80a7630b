#pragma once

#include <array>

namespace pluvarine {

// glTF 2.0 is +Y up; the scene frame (part files' meshes, the viewer's scene, the host's
// building) has its height on z. Every file is written with its top-level nodes turned from
// the scene frame into glTF's, and turned back on reading: x stays, z becomes +Y, y becomes -Z.
// Column-major, as glTF's node matrices; with entries of 0 and ±1 only, a round trip is exact.
inline constexpr std::array<double, 16> gltfFromSceneFrame{1, 0, 0, 0, 0, 0, -1, 0,
                                                           0, 1, 0, 0, 0, 0, 0,  1};
inline constexpr std::array<double, 16> sceneFrameFromGltf{1, 0,  0, 0, 0, 0, 1, 0,
                                                           0, -1, 0, 0, 0, 0, 0, 1};

} // namespace pluvarine
