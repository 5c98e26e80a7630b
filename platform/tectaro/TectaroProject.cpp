#include "platform/tectaro/TectaroProject.h"

#include "base/RuntimeError.h"
#include "platform/system/AtomicFile.h"

#include <QByteArray>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace pluvarine {

namespace {

constexpr const char* formatName = "tectaro-project";

[[noreturn]] void fail(const std::string& what) {
    throw RuntimeError(RuntimeError::HostError, "project file: " + what);
}

nlohmann::json toBinary(const std::string& bytes) {
    return nlohmann::json::binary(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

// Bytes, or base64 text as older project files have them.
std::string bytesOf(const nlohmann::json& value, const std::string& where) {
    if (value.is_binary()) {
        const auto& bytes = value.get_binary();
        return std::string(bytes.begin(), bytes.end());
    }
    if (!value.is_string()) {
        fail(where + " must be bytes or a base64 text");
    }
    const std::string& text = value.get_ref<const std::string&>();
    auto decoded = QByteArray::fromBase64Encoding(QByteArray::fromStdString(text),
                                                  QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        fail(where + " is not valid base64");
    }
    return decoded.decoded.toStdString();
}

const nlohmann::json& member(const nlohmann::json& object, const char* key,
                             const std::string& where) {
    if (!object.is_object() || !object.contains(key)) {
        fail(where + ": \"" + key + "\" is missing");
    }
    return object.at(key);
}

} // namespace

nlohmann::json TectaroProject::toJson() const {
    nlohmann::json elementList = nlohmann::json::array();
    for (const std::shared_ptr<PlacedElement>& element : elements) {
        nlohmann::json matrix = nlohmann::json::array();
        for (float value : element->matrix.values) {
            matrix.push_back(value);
        }
        elementList.push_back({{"name", element->object.name},
                               {"source", element->sourcePath},
                               {"object", toBinary(element->object.bytes())},
                               {"matrix", matrix},
                               {"prepared", element->prepared}});
    }
    nlohmann::json blocks = nlohmann::json::array();
    for (const auto& [id, data] : macroData) {
        blocks.push_back({{"id", id}, {"data", toBinary(data)}});
    }
    return {{"format", formatName},     {"version", 1},
            {"saveNumber", saveNumber}, {"building", building->toJson()},
            {"elements", elementList},  {"macroData", blocks}};
}

TectaroProject TectaroProject::fromJson(const nlohmann::json& json) {
    if (!json.is_object() || json.value("format", nlohmann::json()) != formatName) {
        fail(std::string("not a project (\"format\" must be \"") + formatName + "\")");
    }
    if (json.value("version", nlohmann::json()) != 1) {
        fail("unknown \"version\" (this host reads version 1)");
    }
    TectaroProject project;
    const nlohmann::json& saveNumber = json.value("saveNumber", nlohmann::json(0));
    if (!saveNumber.is_number_integer()) {
        fail("\"saveNumber\" must be a whole number");
    }
    project.saveNumber = saveNumber.get<std::int32_t>();
    project.building =
        std::make_shared<const Building>(Building::fromJson(member(json, "building", "project")));
    const nlohmann::json& elements = member(json, "elements", "project");
    if (!elements.is_array()) {
        fail("\"elements\" must be a list");
    }
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const std::string where = "elements[" + std::to_string(i) + "]";
        const nlohmann::json& entry = elements[i];
        auto element = std::make_shared<PlacedElement>();
        const nlohmann::json& name = member(entry, "name", where);
        if (!name.is_string()) {
            fail(where + ": \"name\" must be a text");
        }
        element->object = ObjectFile::fromBytes(
            bytesOf(member(entry, "object", where), where + ".object"), name.get<std::string>());
        const nlohmann::json& source = entry.value("source", nlohmann::json(""));
        element->sourcePath = source.is_string() ? source.get<std::string>() : std::string();
        const nlohmann::json& matrix = member(entry, "matrix", where);
        if (!matrix.is_array() || matrix.size() != 16) {
            fail(where + ": \"matrix\" must hold 16 numbers");
        }
        for (std::size_t k = 0; k < 16; ++k) {
            if (!matrix[k].is_number()) {
                fail(where + ": \"matrix\" must hold 16 numbers");
            }
            element->matrix.values[k] = matrix[k].get<float>();
        }
        const nlohmann::json& prepared = entry.value("prepared", nlohmann::json(false));
        element->prepared = prepared.is_boolean() && prepared.get<bool>();
        project.elements.push_back(element);
    }
    const nlohmann::json& blocks = member(json, "macroData", "project");
    if (!blocks.is_array()) {
        fail("\"macroData\" must be a list");
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const std::string where = "macroData[" + std::to_string(i) + "]";
        const nlohmann::json& id = member(blocks[i], "id", where);
        if (!id.is_number_integer() || id.get<std::int64_t>() < INT32_MIN ||
            id.get<std::int64_t>() > INT32_MAX) {
            fail(where + ": \"id\" must be a 32-bit whole number");
        }
        project.macroData[id.get<std::int32_t>()] =
            bytesOf(member(blocks[i], "data", where), where + ".data");
    }
    return project;
}

bool TectaroProject::save(const std::string& file, std::string* error) const {
    std::vector<std::uint8_t> cbor;
    try {
        cbor = nlohmann::json::to_cbor(toJson());
    } catch (const RuntimeError& failure) { // an element's kept bytes could not be read back
        if (error) {
            *error = "cannot write " + file + ": " + failure.description();
        }
        return false;
    }
    AtomicFile out(file);
    if (!out.create() || !out.writeAll(reinterpret_cast<const char*>(cbor.data()), cbor.size()) ||
        !out.commit(AtomicFile::Sync::Data)) {
        if (error) {
            *error = "cannot write " + file + ": " + out.errorText();
        }
        return false;
    }
    return true;
}

TectaroProject TectaroProject::load(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        throw RuntimeError(RuntimeError::FileNotFound, "cannot read the project " + file);
    }
    const std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    // JSON text (older files) opens with '{', after white space at most; CBOR with a map's byte.
    const std::size_t first = content.find_first_not_of(" \t\r\n");
    const bool text = first != std::string::npos && content[first] == '{';
    const nlohmann::json json = text ? nlohmann::json::parse(content, nullptr, false)
                                     : nlohmann::json::from_cbor(content, true, false);
    if (json.is_discarded()) {
        throw RuntimeError(RuntimeError::HostError, file + " is not a project file");
    }
    TectaroProject project = fromJson(json);
    project.path = file;
    return project;
}

} // namespace pluvarine
