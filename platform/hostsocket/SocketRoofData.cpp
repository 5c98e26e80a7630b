#include "platform/hostsocket/SocketRoofData.h"

#include "platform/hostsocket/ProtocolValues.h"

namespace pluvarine {

double SocketRoofData::GetRoofingThickness() {
    return ProtocolValues::number(call("GetRoofingThickness"), "GetRoofingThickness");
}

double SocketRoofData::GetGutterWidth() {
    return ProtocolValues::number(call("GetGutterWidth"), "GetGutterWidth");
}

double SocketRoofData::GetFaceOverhang(std::int32_t face, bool& ignored) {
    using V = ProtocolValues;
    const nlohmann::json result = call("GetFaceOverhang", {{"face", face}});
    const double value = V::number(V::member(result, "value"), "GetFaceOverhang");
    ignored = V::boolean(V::member(result, "ignored"), "GetFaceOverhang");
    return value;
}

double SocketRoofData::GetFacePitch(std::int32_t face) {
    return ProtocolValues::number(call("GetFacePitch", {{"face", face}}), "GetFacePitch");
}

double SocketRoofData::GetFaceDirection(std::int32_t face) {
    return ProtocolValues::number(call("GetFaceDirection", {{"face", face}}), "GetFaceDirection");
}

} // namespace pluvarine
