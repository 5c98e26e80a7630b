#pragma once

#include "host/HostBuilding.h"
#include "platform/hostsocket/SocketObject.h"

namespace pluvarine {

// A building of a host over the host protocol.
class SocketBuilding : public HostBuilding, private SocketObject {
public:
    using SocketObject::SocketObject;
    std::shared_ptr<HostRoofList> GetRoofList() override;
};

} // namespace pluvarine
