#include "platform/hostsocket/SocketRoofList.h"

#include "platform/hostsocket/ProtocolValues.h"
#include "platform/hostsocket/SocketRoof.h"

namespace pluvarine {

std::shared_ptr<HostRoof> SocketRoofList::FindRoofAt(bool flag, float x, float y,
                                                     std::int32_t& ignored,
                                                     std::array<float, 6>& six, bool& ignoredFlag) {
    using V = ProtocolValues;
    const nlohmann::json result =
        call("FindRoofAt", {{"flag", flag}, {"x", x}, {"y", y}, {"six", ProtocolValues::six(six)}});
    const std::string what = "FindRoofAt";
    const std::int64_t roof = V::handle(V::member(result, "roof"), what);
    ignored = V::integer(V::member(result, "ignored"), what);
    six = V::six(V::member(result, "six"), what);
    ignoredFlag = V::boolean(V::member(result, "ignoredFlag"), what);
    return roof == 0 ? nullptr : std::make_shared<SocketRoof>(client(), roof);
}

} // namespace pluvarine
