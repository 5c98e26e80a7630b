#include "platform/viewer/MeshLevels.h"

#include "platform/viewer/Box3.h"

#include <algorithm>
#include <cmath>
#include <meshoptimizer.h>

namespace pluvarine {

namespace {

// Each level is the fewest triangles whose surface stays within an error 1.41 times the one
// before, from 1/1024 of the mesh's size up; one that saves less than a quarter is not worth its
// draw. A view then draws levels at most 1.41 times finer than it could.
constexpr float kFinestError = 1.0f / 1024;
constexpr float kCoarsestError = 1.0f / 4;
constexpr float kErrorStep = 1.41421356f;
constexpr float kWorthIt = 0.75f;

// The mesh with the vertices that share a position made one: the two sides of a hard edge
// are two vertices with the same position, and a simplifier that keeps them apart keeps
// almost every edge of a part made of flat faces.
struct Welded {
    explicit Welded(const MeshData& mesh) : remap(mesh.vertexCount()) {
        const std::size_t count = meshopt_generateVertexRemap(
            remap.data(), mesh.indices.data(), mesh.indices.size(), mesh.positions.data(),
            mesh.vertexCount(), 3 * sizeof(float));
        indices.resize(mesh.indices.size());
        meshopt_remapIndexBuffer(indices.data(), mesh.indices.data(), mesh.indices.size(),
                                 remap.data());
        positions.resize(3 * count);
        meshopt_remapVertexBuffer(positions.data(), mesh.positions.data(), mesh.vertexCount(),
                                  3 * sizeof(float), remap.data());
        // The mesh's vertices at each position, in runs.
        first.assign(count + 1, 0);
        for (const unsigned int w : remap) {
            if (w < count) {
                ++first[w + 1];
            }
        }
        for (std::size_t w = 0; w < count; ++w) {
            first[w + 1] += first[w];
        }
        sharing.resize(first[count]);
        std::vector<std::uint32_t> filled(first.begin(), first.end() - 1);
        for (std::uint32_t v = 0; v < remap.size(); ++v) {
            if (remap[v] < count) {
                sharing[filled[remap[v]]++] = v;
            }
        }
    }

    // The mesh's own vertex for each corner of the welded triangles: of those at the corner's
    // position, the one whose normal is closest to the triangle's.
    void unweld(const MeshData& mesh, std::vector<std::uint32_t>& triangles) const {
        for (std::size_t t = 0; t + 2 < triangles.size(); t += 3) {
            const float* a = &positions[3 * triangles[t]];
            const float* b = &positions[3 * triangles[t + 1]];
            const float* c = &positions[3 * triangles[t + 2]];
            const float u[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
            const float v[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
            const float face[3] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                                   u[0] * v[1] - u[1] * v[0]};
            for (std::size_t corner = t; corner < t + 3; ++corner) {
                const std::uint32_t w = triangles[corner];
                std::uint32_t best = sharing[first[w]];
                float bestDot = -INFINITY;
                for (std::uint32_t i = first[w]; i < first[w + 1]; ++i) {
                    const float* n = &mesh.normals[3 * sharing[i]];
                    const float dot = n[0] * face[0] + n[1] * face[1] + n[2] * face[2];
                    if (dot > bestDot) {
                        bestDot = dot;
                        best = sharing[i];
                    }
                }
                triangles[corner] = best;
            }
        }
    }

    std::vector<unsigned int> remap;
    std::vector<std::uint32_t> indices;
    std::vector<float> positions;
    std::vector<std::uint32_t> first;
    std::vector<std::uint32_t> sharing;
};

} // namespace

MeshLevels::MeshLevels(const MeshData& mesh, bool coarser, const std::array<float, 3>& stretch) {
    const std::size_t vertices = mesh.vertexCount();
    const auto own = static_cast<std::uint32_t>(mesh.indices.size());
    m_levels.push_back({0, own, 0});
    if (vertices == 0 || mesh.normals.size() != mesh.positions.size()) {
        return;
    }
    Box3 box;
    for (std::size_t v = 0; v < vertices; ++v) {
        box.add({mesh.positions[3 * v], mesh.positions[3 * v + 1], mesh.positions[3 * v + 2]});
    }
    const auto centre = box.centre();
    const auto size = box.size();
    m_centre = {float(centre[0]), float(centre[1]), float(centre[2])};
    m_radius = float(std::hypot(size[0], size[1], size[2]) / 2);
    if (!coarser) {
        return;
    }
    const Welded welded(mesh);
    const std::size_t weldedCount = welded.positions.size() / 3;
    std::vector<float> stretched = welded.positions;
    for (std::size_t i = 0; i < stretched.size(); ++i) {
        stretched[i] *= stretch[i % 3];
    }
    // Every level is simplified from the mesh itself, so its error is measured against it.
    const float scale = meshopt_simplifyScale(stretched.data(), weldedCount, 3 * sizeof(float));
    std::vector<std::uint32_t> simplified(mesh.indices.size());
    for (float target = kFinestError; target <= kCoarsestError; target *= kErrorStep) {
        float error = 0;
        const std::size_t count = meshopt_simplify(
            simplified.data(), welded.indices.data(), welded.indices.size(), stretched.data(),
            weldedCount, 3 * sizeof(float), 0, target, 0, &error);
        const Level& previous = m_levels.back();
        if (count == 0 || count > previous.indexCount * kWorthIt) {
            continue;
        }
        std::vector<std::uint32_t> level(simplified.begin(),
                                         simplified.begin() + std::ptrdiff_t(count));
        welded.unweld(mesh, level);
        m_levels.push_back({own + static_cast<std::uint32_t>(m_coarserIndices.size()),
                            static_cast<std::uint32_t>(count),
                            std::max(error * scale, previous.error)});
        m_coarserIndices.insert(m_coarserIndices.end(), level.begin(), level.end());
    }
}

std::size_t MeshLevels::coarsestWithin(float tolerance) const {
    std::size_t chosen = 0;
    while (chosen + 1 < m_levels.size() && m_levels[chosen + 1].error < tolerance) {
        ++chosen;
    }
    return chosen;
}

} // namespace pluvarine
