#pragma once

#include "host/HostRoof.h"
#include "platform/hostsocket/SocketObject.h"

namespace pluvarine {

// A roof of a host over the host protocol.
class SocketRoof : public HostRoof, private SocketObject {
public:
    using SocketObject::SocketObject;
    std::shared_ptr<HostRoofData> GetRoofData() override;
    std::int32_t FindRoofFaceAt(bool flag, float x, float y, float& height,
                                std::array<float, 6>& six, bool& ignored) override;
};

} // namespace pluvarine
