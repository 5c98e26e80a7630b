#include "platform/hostsocket/SocketRoof.h"

#include "platform/hostsocket/ProtocolValues.h"
#include "platform/hostsocket/SocketRoofData.h"

namespace pluvarine {

std::shared_ptr<HostRoofData> SocketRoof::GetRoofData() {
    const std::int64_t handle = ProtocolValues::handle(call("GetRoofData"), "GetRoofData");
    return handle == 0 ? nullptr : std::make_shared<SocketRoofData>(client(), handle);
}

std::int32_t SocketRoof::FindRoofFaceAt(bool flag, float x, float y, float& height,
                                        std::array<float, 6>& six, bool& ignored) {
    using V = ProtocolValues;
    const nlohmann::json result = call(
        "FindRoofFaceAt", {{"flag", flag}, {"x", x}, {"y", y}, {"six", ProtocolValues::six(six)}});
    const std::string what = "FindRoofFaceAt";
    const std::int32_t face = V::integer(V::member(result, "face"), what);
    height = static_cast<float>(V::number(V::member(result, "height"), what));
    six = V::six(V::member(result, "six"), what);
    ignored = V::boolean(V::member(result, "ignored"), what);
    return face;
}

} // namespace pluvarine
