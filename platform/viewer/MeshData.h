#pragma once

#include <cstdint>
#include <vector>

namespace pluvarine {

// One indexed triangle mesh: three floats per vertex for positions (metres) and normals.
struct MeshData {
    std::vector<float> positions;
    std::vector<float> normals;
    std::vector<std::uint32_t> indices;

    std::size_t vertexCount() const { return positions.size() / 3; }
};

} // namespace pluvarine
