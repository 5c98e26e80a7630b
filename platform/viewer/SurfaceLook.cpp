#include "platform/viewer/SurfaceLook.h"

#include <algorithm>
#include <cmath>

namespace pluvarine {

float srgbToLinear(int channel) {
    const double c = std::clamp(channel, 0, 255) / 255.0;
    return static_cast<float>(c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
}

} // namespace pluvarine
