#pragma once

#include "host/HostRoofData.h"
#include "platform/hostsocket/SocketObject.h"

namespace pluvarine {

// The data of a roof of a host over the host protocol.
class SocketRoofData : public HostRoofData, private SocketObject {
public:
    using SocketObject::SocketObject;
    double GetRoofingThickness() override;
    double GetGutterWidth() override;
    double GetFaceOverhang(std::int32_t face, bool& ignored) override;
    double GetFacePitch(std::int32_t face) override;
    double GetFaceDirection(std::int32_t face) override;
};

} // namespace pluvarine
