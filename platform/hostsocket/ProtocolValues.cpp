#include "platform/hostsocket/ProtocolValues.h"

#include "base/RuntimeError.h"

#include <QBuffer>
#include <limits>

namespace pluvarine {

namespace {

[[noreturn]] void wrongValue(const std::string& what, const char* expected,
                             const nlohmann::json& value) {
    throw RuntimeError(RuntimeError::HostError, what + ": the host sent " + value.dump() +
                                                    " where " + expected + " belongs");
}

} // namespace

std::string ProtocolValues::text(const Json& value, const std::string& what) {
    if (!value.is_string()) {
        wrongValue(what, "a text", value);
    }
    return value.get<std::string>();
}

double ProtocolValues::number(const Json& value, const std::string& what) {
    if (!value.is_number()) {
        wrongValue(what, "a number", value);
    }
    return value.get<double>();
}

std::int32_t ProtocolValues::integer(const Json& value, const std::string& what) {
    if (!value.is_number_integer() ||
        value.get<std::int64_t>() < std::numeric_limits<std::int32_t>::min() ||
        value.get<std::int64_t>() > std::numeric_limits<std::int32_t>::max()) {
        wrongValue(what, "a 32-bit integer", value);
    }
    return value.get<std::int32_t>();
}

bool ProtocolValues::boolean(const Json& value, const std::string& what) {
    if (!value.is_boolean()) {
        wrongValue(what, "true or false", value);
    }
    return value.get<bool>();
}

std::int64_t ProtocolValues::handle(const Json& value, const std::string& what) {
    if (value.is_null()) {
        return 0;
    }
    if (!value.is_number_integer() || value.get<std::int64_t>() <= 0) {
        wrongValue(what, "a handle", value);
    }
    return value.get<std::int64_t>();
}

std::array<float, 6> ProtocolValues::six(const Json& value, const std::string& what) {
    if (!value.is_array() || value.size() != 6) {
        wrongValue(what, "six numbers", value);
    }
    std::array<float, 6> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = static_cast<float>(number(value[i], what));
    }
    return values;
}

const nlohmann::json& ProtocolValues::member(const Json& object, const char* key) {
    static const Json none;
    if (!object.is_object() || !object.contains(key)) {
        return none;
    }
    return object[key];
}

nlohmann::json ProtocolValues::picture(const HostPicture& picture) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    picture.image.save(&buffer, "PNG");
    return {{"png", png.toBase64().toStdString()}};
}

nlohmann::json ProtocolValues::matrix(const PlacementMatrix& matrix) {
    return matrix.values;
}

nlohmann::json ProtocolValues::six(const std::array<float, 6>& values) {
    return values;
}

} // namespace pluvarine
