#pragma once

#include "platform/viewer/MeshData.h"

#include <array>
#include <cstdint>
#include <vector>

namespace pluvarine {

// A mesh's levels of detail: coarser index lists over the same vertices, for drawing it where
// it covers few pixels. A pipe seen whole along a house wall is a few pixels wide, and its
// 64-sided sweep then draws as many triangles as pixels; a level whose surface lies within a
// fraction of a pixel of the mesh's own draws nearly the same picture with a fraction of them.
class MeshLevels {
public:
    struct Level {
        // In the mesh's own indices followed by coarserIndices(), as one index buffer holds them.
        std::uint32_t firstIndex = 0;
        std::uint32_t indexCount = 0;
        float error = 0; // how far its surface may lie from the mesh's, stretched
    };

    // Only the mesh's own level when `coarser` is false, which costs nothing to make. The
    // levels are made, and their errors measured, for the mesh stretched by `stretch` along
    // its axes: a pipe drawn eight times its modelled length has errors along its length
    // eight times as large, and none across it.
    MeshLevels(const MeshData& mesh, bool coarser, const std::array<float, 3>& stretch = {1, 1, 1});

    // The coarser levels' triangles, one level after the other, to follow the mesh's own.
    const std::vector<std::uint32_t>& coarserIndices() const { return m_coarserIndices; }
    const std::vector<Level>& levels() const { return m_levels; }
    // A sphere around the mesh, in its own frame.
    const std::array<float, 3>& centre() const { return m_centre; }
    float radius() const { return m_radius; }

    // The coarsest level whose error stays under `tolerance`, in the stretched mesh's units.
    std::size_t coarsestWithin(float tolerance) const;

private:
    std::vector<std::uint32_t> m_coarserIndices;
    std::vector<Level> m_levels;
    std::array<float, 3> m_centre{0, 0, 0};
    float m_radius = 0;
};

} // namespace pluvarine
