#pragma once

#include "host/HostElement.h"
#include "platform/hostsocket/SocketObject.h"

namespace pluvarine {

// A building element of a host over the host protocol.
class SocketElement : public HostElement, private SocketObject {
public:
    using SocketObject::SocketObject;
    void PrepareElement(bool flag) override;
    std::int32_t SetElementMatrix(const PlacementMatrix& matrix) override;
    std::int32_t CommitElement(bool flag) override;
};

} // namespace pluvarine
