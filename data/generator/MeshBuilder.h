#pragma once

#include "data/generator/Vec3.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace pluvarine {

// Collects one triangle mesh (positions, normals, indices) in millimetres. Surfaces meeting at a
// crease get their own vertices, so shading stays smooth within a surface and sharp between them.
class MeshBuilder {
public:
    using Surface = std::function<Vec3(double u, double v)>;

    // Samples f at each u of `us` and at `nv` equal steps of v over [0, 1); v is periodic, so the
    // last column joins the first. Normals are (df/du x df/dv) with u taken in the order of `us`,
    // reversed when `reversed`.
    void addPeriodicSurface(const std::vector<double>& us, int nv, const Surface& f,
                            bool reversed = false);

    std::uint32_t addVertex(const Vec3& position, const Vec3& normal);
    // Adds the triangle wound so that its face normal agrees with its vertex normals; triangles
    // of (nearly) no area are dropped.
    void addTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c);
    void addQuad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d);

    // Appends `other` mapped by the orthonormal basis (ex, ey, ez) and then moved by `origin`.
    void append(const MeshBuilder& other, const Vec3& ex = {1, 0, 0}, const Vec3& ey = {0, 1, 0},
                const Vec3& ez = {0, 0, 1}, const Vec3& origin = {});

    const std::vector<Vec3>& positions() const { return m_positions; }
    const std::vector<Vec3>& normals() const { return m_normals; }
    const std::vector<std::uint32_t>& indices() const { return m_indices; }

    // The volume enclosed by the triangles, positive when they face outwards.
    double signedVolume() const;

private:
    std::vector<Vec3> m_positions;
    std::vector<Vec3> m_normals;
    std::vector<std::uint32_t> m_indices;
};

} // namespace pluvarine
