#pragma once

#include <array>
#include <string>

namespace pluvarine {

// A metallic-roughness material as glTF defines it. The base colour is linear (not sRGB), each
// channel 0..1.
struct SurfaceLook {
    std::string name;
    std::array<float, 3> baseColor{0.8f, 0.8f, 0.8f};
    float metallic = 0.0f;
    float roughness = 0.5f;

    bool operator==(const SurfaceLook&) const = default;
};

// sRGB 0..255 channel to linear 0..1, the glTF transfer function.
float srgbToLinear(int channel);

} // namespace pluvarine
