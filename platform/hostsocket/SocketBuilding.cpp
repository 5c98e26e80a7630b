#include "platform/hostsocket/SocketBuilding.h"

#include "platform/hostsocket/ProtocolValues.h"
#include "platform/hostsocket/SocketRoofList.h"

namespace pluvarine {

std::shared_ptr<HostRoofList> SocketBuilding::GetRoofList() {
    const std::int64_t handle = ProtocolValues::handle(call("GetRoofList"), "GetRoofList");
    return handle == 0 ? nullptr : std::make_shared<SocketRoofList>(client(), handle);
}

} // namespace pluvarine
