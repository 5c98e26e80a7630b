#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace pluvarine {

// An object of the present scene with the last transforms and material it received.
struct SceneObject {
    std::int32_t id = 0;
    std::string partFile;
    std::optional<std::array<float, 3>> scale;
    std::optional<std::array<float, 3>> position;
    std::optional<std::array<float, 4>> rotation; // axis x, y, z, angle in degrees
    std::optional<std::string> material;
    bool committed = false;
};

} // namespace pluvarine
