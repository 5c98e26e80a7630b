#pragma once

#include <array>
#include <cstdint>
#include <memory>

namespace pluvarine {

class HostRoof;

// The roofs of a building.
class HostRoofList {
public:
    virtual ~HostRoofList() = default;
    // The roof at the plan point (overhang included), or nullptr when there is none.
    virtual std::shared_ptr<HostRoof> FindRoofAt(bool flag, float x, float y, std::int32_t& ignored,
                                                 std::array<float, 6>& six, bool& ignoredFlag) = 0;
};

} // namespace pluvarine
