#pragma once

#include <cstdint>

namespace pluvarine {

// The data of one roof, through the host's roof-data interface. Lengths in metres, angles in
// degrees; faces count from 1. A call the host cannot answer throws RuntimeError.
class HostRoofData {
public:
    virtual ~HostRoofData() = default;
    virtual double GetRoofingThickness() = 0;
    virtual double GetGutterWidth() = 0;
    virtual double GetFaceOverhang(std::int32_t face, bool& ignored) = 0;
    virtual double GetFacePitch(std::int32_t face) = 0;
    virtual double GetFaceDirection(std::int32_t face) = 0;
};

} // namespace pluvarine
