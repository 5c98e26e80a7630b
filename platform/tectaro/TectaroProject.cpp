#include "platform/tectaro/TectaroProject.h"

#include "base/RuntimeError.h"
#include "platform/system/AtomicFile.h"

#include <QByteArray>
#include <fstream>
#include <nlohmann/json.hpp>

namespace pluvarine {

namespace {

constexpr const char* formatName = "tectaro-project";

[[noreturn]] void fail(const std::string& what) {
    throw RuntimeError(RuntimeError::HostError, "project file: " + what);
}

std::string toBase64(const std::string& bytes) {
    return QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()))
        .toBase64()
        .toStdString();
}

std::string fromBase64(const nlohmann::json& value, const std::string& where) {
    if (!value.is_string()) {
        fail(where + " must be a base64 text");
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
                               {"object", toBase64(element->object.bytes)},
                               {"matrix", matrix},
                               {"prepared", element->prepared}});
    }
    nlohmann::json blocks = nlohmann::json::array();
    for (const auto& [id, data] : macroData) {
        blocks.push_back({{"id", id}, {"data", toBase64(data)}});
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
            fromBase64(member(entry, "object", where), where + ".object"), name.get<std::string>());
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
            fromBase64(member(blocks[i], "data", where), where + ".data");
    }
    return project;
}

bool TectaroProject::save(const std::string& file, std::string* error) const {
    AtomicFile out(file);
    const std::string text = toJson().dump(1);
    if (!out.create() || !out.writeAll(text.data(), text.size()) ||
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
    const nlohmann::json json = nlohmann::json::parse(in, nullptr, false);
    if (json.is_discarded()) {
        throw RuntimeError(RuntimeError::HostError, file + " is not a project file (no JSON)");
    }
    TectaroProject project = fromJson(json);
    project.path = file;
    return project;
}

} // namespace pluvarine
