#pragma once

#include "host/HostRoofList.h"
#include "platform/hostsocket/SocketObject.h"

namespace pluvarine {

// The roofs of a building of a host over the host protocol.
class SocketRoofList : public HostRoofList, private SocketObject {
public:
    using SocketObject::SocketObject;
    std::shared_ptr<HostRoof> FindRoofAt(bool flag, float x, float y, std::int32_t& ignored,
                                         std::array<float, 6>& six, bool& ignoredFlag) override;
};

} // namespace pluvarine
