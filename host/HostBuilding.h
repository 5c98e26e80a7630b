#pragma once

#include <memory>

namespace pluvarine {

class HostRoofList;

// A building of the host.
class HostBuilding {
public:
    virtual ~HostBuilding() = default;
    virtual std::shared_ptr<HostRoofList> GetRoofList() = 0;
};

} // namespace pluvarine
