#pragma once

#include <array>
#include <cstdint>
#include <memory>

namespace pluvarine {

class HostRoofData;

// One roof of the host's building.
class HostRoof {
public:
    virtual ~HostRoof() = default;
    virtual std::shared_ptr<HostRoofData> GetRoofData() = 0;
    // Face at the plan point (x, y in metres), counting from 0, and the face's height there in
    // metres; throws RuntimeError when no face lies there. `six` are set to 1.0 by the caller.
    virtual std::int32_t FindRoofFaceAt(bool flag, float x, float y, float& height,
                                        std::array<float, 6>& six, bool& ignored) = 0;
};

} // namespace pluvarine
