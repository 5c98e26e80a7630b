#pragma once

namespace pluvarine {

// Roof values read from the host at the picked wall, converted to millimetres (angles in
// degrees), and the picked plan point in host metres. All 0 at start-up.
struct RoofData {
    double roofOverhang = 0;
    double gutterWidth = 0;
    double roofPitch = 0;
    double roofingThickness = 0;
    double roofDirection = 0;
    float roofLevel = 0;
    float groundLevel = 0;
    float clickX = 0;
    float clickY = 0;
};

} // namespace pluvarine
