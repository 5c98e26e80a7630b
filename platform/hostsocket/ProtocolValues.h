#pragma once

#include "host/HostPicture.h"
#include "host/PlacementMatrix.h"

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace pluvarine {

// The values of the host protocol read from and written to JSON. Reading a value of the wrong
// kind throws RuntimeError (HostError) naming what was expected, so a host that answers wrongly
// fails the call as any host error does.
class ProtocolValues {
public:
    using Json = nlohmann::json;

    static std::string text(const Json& value, const std::string& what);
    static double number(const Json& value, const std::string& what);
    static std::int32_t integer(const Json& value, const std::string& what);
    static bool boolean(const Json& value, const std::string& what);
    // A handle, 0 for null.
    static std::int64_t handle(const Json& value, const std::string& what);
    static std::array<float, 6> six(const Json& value, const std::string& what);
    // A member of an object, null when the object lacks it.
    static const Json& member(const Json& object, const char* key);

    static Json picture(const HostPicture& picture); // {"png": base64}
    static Json matrix(const PlacementMatrix& matrix);
    static Json six(const std::array<float, 6>& values);
};

} // namespace pluvarine
