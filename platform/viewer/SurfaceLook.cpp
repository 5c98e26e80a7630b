#include "platform/viewer/SurfaceLook.h"

#include <algorithm>
#include <cmath>

namespace pluvarine {

float srgbToLinear(int channel) {
    const double c = std::clamp(channel, 0, 255) / 255.0;
    return static_cast<float>(c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
}

int linearToSrgb(float linear) {
    const double l = std::clamp(static_cast<double>(linear), 0.0, 1.0);
    const double c = l <= 0.0031308 ? l * 12.92 : 1.055 * std::pow(l, 1 / 2.4) - 0.055;
    return static_cast<int>(std::lround(c * 255));
}

} // namespace pluvarine
