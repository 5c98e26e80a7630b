#pragma once

#include "data/generator/Opening.h"
#include "data/generator/Vec3.h"

#include <cstdint>
#include <string>
#include <tiny_gltf.h>
#include <vector>

namespace pluvarine {

// A part file of the working folder as a test sees it: read with tinygltf, its one triangle
// mesh in metres, its own extras and its declared openings (metres).
class GlbPart {
public:
    explicit GlbPart(const std::string& path);

    static std::string resPath(const std::string& stem);
    // The part file of that stem in the working folder's res/, read once per test program.
    static const GlbPart& catalogued(const std::string& stem);

    const tinygltf::Model& model() const { return m_model; }
    const std::vector<Vec3>& positions() const { return m_positions; }
    const std::vector<Vec3>& normals() const { return m_normals; }
    const std::vector<std::uint32_t>& indices() const { return m_indices; }
    std::size_t triangleCount() const { return m_indices.size() / 3; }

    Vec3 lowest() const;  // componentwise minimum of the positions
    Vec3 highest() const; // componentwise maximum

    const Opening& opening(const std::string& name) const;
    const std::vector<Opening>& openings() const { return m_openings; }

    // The "pluvarine" object of the asset's or the root node's extras (null Value if absent).
    const tinygltf::Value& assetExtras() const;
    const tinygltf::Value& nodeExtras() const;

    // Winding number of the closed surface about p: 1 inside one solid, 0 outside.
    double windingNumber(const Vec3& p) const;

private:
    Vec3 extreme(double sign) const;

    tinygltf::Model m_model;
    std::vector<Vec3> m_positions;
    std::vector<Vec3> m_normals;
    std::vector<std::uint32_t> m_indices;
    std::vector<Opening> m_openings;
};

} // namespace pluvarine
