#pragma once

#include <array>

namespace pluvarine {

// The 4 x 4 single-precision placement matrix handed to the host, stored with the first index
// varying fastest: M(0,0), M(1,0), M(2,0), M(3,0), M(0,1), ... M(3,3). Column 3, rows 0-2 carry
// the translation in host metres; the upper-left 3 x 3 block a rotation about the vertical.
struct PlacementMatrix {
    std::array<float, 16> values{};

    float& at(int row, int column) { return values[static_cast<std::size_t>(column * 4 + row)]; }
    float at(int row, int column) const {
        return values[static_cast<std::size_t>(column * 4 + row)];
    }
};

} // namespace pluvarine
