#include "platform/hostsocket/SocketObjectTemplate.h"

#include "platform/hostsocket/ProtocolValues.h"
#include "platform/hostsocket/SocketElement.h"

namespace pluvarine {

std::shared_ptr<HostElement> SocketObjectTemplate::CreateElement(void*, std::int32_t flags) {
    const std::int64_t handle = ProtocolValues::handle(
        call("CreateElement", {{"parent", nullptr}, {"flags", flags}}), "CreateElement");
    return handle == 0 ? nullptr : std::make_shared<SocketElement>(client(), handle);
}

} // namespace pluvarine
