#include "data/generator/MeshBuilder.h"

#include <stdexcept>

namespace pluvarine {

namespace {

// Finite-difference steps: u is a length in millimetres, v a fraction of a turn.
constexpr double kDu = 1e-4;
constexpr double kDv = 1e-6;

} // namespace

void MeshBuilder::addPeriodicSurface(const std::vector<double>& us, int nv, const Surface& f,
                                     bool reversed) {
    if (us.size() < 2 || nv < 3) {
        throw std::invalid_argument("surface needs two rows and three columns");
    }
    const auto first = static_cast<std::uint32_t>(m_positions.size());
    const std::size_t rows = us.size();
    // The surface faces along (direction of travel through `us`) x dP/dv.
    const double travel = us.back() >= us.front() ? 1.0 : -1.0;
    std::vector<Vec3> normals(rows * nv);
    for (std::size_t i = 0; i < rows; ++i) {
        const double u = us[i];
        // One-sided differences at the edges keep the normal of this surface, not its neighbour's.
        const double u0 = i == 0 ? u : u - kDu;
        const double u1 = i + 1 == rows ? u : u + kDu;
        for (int j = 0; j < nv; ++j) {
            const double v = static_cast<double>(j) / nv;
            const Vec3 du = (f(u1, v) - f(u0, v)) * travel;
            const Vec3 dv = f(u, v + kDv) - f(u, v - kDv);
            normals[i * nv + j] = du.cross(dv).normalized() * (reversed ? -1.0 : 1.0);
        }
    }
    // A row shrunk to a point (the centre of a disc, the tip of a cone) has no normal of its
    // own: it takes the neighbouring row's.
    for (std::size_t i = 0; i < rows; ++i) {
        const std::size_t neighbour = i == 0 ? 1 : i - 1;
        for (int j = 0; j < nv; ++j) {
            if (normals[i * nv + j].length() == 0) {
                normals[i * nv + j] = normals[neighbour * nv + j];
            }
        }
    }
    for (std::size_t i = 0; i < rows; ++i) {
        for (int j = 0; j < nv; ++j) {
            addVertex(f(us[i], static_cast<double>(j) / nv), normals[i * nv + j]);
        }
    }
    for (std::size_t i = 0; i + 1 < us.size(); ++i) {
        for (int j = 0; j < nv; ++j) {
            const int k = (j + 1) % nv;
            const auto row = first + static_cast<std::uint32_t>(i * nv);
            const auto next = row + static_cast<std::uint32_t>(nv);
            addQuad(row + j, row + k, next + k, next + j);
        }
    }
}

std::uint32_t MeshBuilder::addVertex(const Vec3& position, const Vec3& normal) {
    m_positions.push_back(position);
    m_normals.push_back(normal.normalized());
    return static_cast<std::uint32_t>(m_positions.size() - 1);
}

void MeshBuilder::addTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    const Vec3 face = (m_positions[b] - m_positions[a]).cross(m_positions[c] - m_positions[a]);
    // Below about 1e-6 mm^2 a triangle is a sliver at a pole or seam: nothing to draw.
    if (face.length() < 2e-6) {
        return;
    }
    const Vec3 vertexNormals = m_normals[a] + m_normals[b] + m_normals[c];
    if (face.dot(vertexNormals) < 0) {
        std::swap(b, c);
    }
    m_indices.insert(m_indices.end(), {a, b, c});
}

void MeshBuilder::addQuad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    addTriangle(a, b, c);
    addTriangle(a, c, d);
}

void MeshBuilder::append(const MeshBuilder& other, const Vec3& ex, const Vec3& ey, const Vec3& ez,
                         const Vec3& origin) {
    const auto offset = static_cast<std::uint32_t>(m_positions.size());
    for (std::size_t i = 0; i < other.m_positions.size(); ++i) {
        const Vec3& p = other.m_positions[i];
        const Vec3& n = other.m_normals[i];
        m_positions.push_back(origin + ex * p.x + ey * p.y + ez * p.z);
        m_normals.push_back(ex * n.x + ey * n.y + ez * n.z);
    }
    for (std::uint32_t index : other.m_indices) {
        m_indices.push_back(index + offset);
    }
}

double MeshBuilder::signedVolume() const {
    double volume = 0;
    for (std::size_t i = 0; i + 2 < m_indices.size(); i += 3) {
        const Vec3& a = m_positions[m_indices[i]];
        const Vec3& b = m_positions[m_indices[i + 1]];
        const Vec3& c = m_positions[m_indices[i + 2]];
        volume += a.dot(b.cross(c)) / 6.0;
    }
    return volume;
}

} // namespace pluvarine
