#pragma once

#include "host/HostObjectTemplate.h"
#include "platform/hostsocket/SocketObject.h"

namespace pluvarine {

// An object file loaded by a host over the host protocol.
class SocketObjectTemplate : public HostObjectTemplate, private SocketObject {
public:
    using SocketObject::SocketObject;
    // The parent is always none; it travels as null.
    std::shared_ptr<HostElement> CreateElement(void* parent, std::int32_t flags) override;
};

} // namespace pluvarine
