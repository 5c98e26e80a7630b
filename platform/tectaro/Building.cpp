#include "platform/tectaro/Building.h"

#include "base/RuntimeError.h"
#include "platform/tectaro/PlanGeometry.h"

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numbers>

namespace pluvarine {

namespace {

constexpr const char* formatName = "tectaro-building";

[[noreturn]] void fail(const std::string& where, const std::string& what) {
    throw RuntimeError(RuntimeError::HostError, "building file: " + where + ": " + what);
}

double number(const nlohmann::json& object, const char* key, const std::string& where,
              std::optional<double> fallback = std::nullopt) {
    if (!object.contains(key)) {
        if (fallback) {
            return *fallback;
        }
        fail(where, std::string("\"") + key + "\" is missing");
    }
    const nlohmann::json& value = object.at(key);
    if (!value.is_number() || !std::isfinite(value.get<double>())) {
        fail(where, std::string("\"") + key + "\" must be a number");
    }
    return value.get<double>();
}

QPointF point(const nlohmann::json& value, const std::string& where) {
    if (!value.is_array() || value.size() != 2 || !value[0].is_number() || !value[1].is_number()) {
        fail(where, "a point must be [x, y]");
    }
    return QPointF(value[0].get<double>(), value[1].get<double>());
}

std::vector<QPointF> points(const nlohmann::json& object, const char* key, const std::string& where,
                            std::size_t minimum) {
    if (!object.contains(key) || !object.at(key).is_array()) {
        fail(where, std::string("\"") + key + "\" must be a list of points");
    }
    std::vector<QPointF> result;
    for (std::size_t i = 0; i < object.at(key).size(); ++i) {
        result.push_back(
            point(object.at(key)[i], where + "." + key + "[" + std::to_string(i) + "]"));
    }
    if (result.size() < minimum) {
        fail(where,
             std::string("\"") + key + "\" needs at least " + std::to_string(minimum) + " points");
    }
    return result;
}

bool flag(const nlohmann::json& object, const char* key, const std::string& where, bool fallback) {
    if (!object.contains(key)) {
        return fallback;
    }
    if (!object.at(key).is_boolean()) {
        fail(where, std::string("\"") + key + "\" must be true or false");
    }
    return object.at(key).get<bool>();
}

std::string text(const nlohmann::json& object, const char* key, const std::string& where,
                 const std::string& fallback) {
    if (!object.contains(key)) {
        return fallback;
    }
    if (!object.at(key).is_string()) {
        fail(where, std::string("\"") + key + "\" must be a text");
    }
    return object.at(key).get<std::string>();
}

nlohmann::json pointJson(QPointF p) {
    return nlohmann::json::array({p.x(), p.y()});
}

template <typename Points> nlohmann::json pointsJson(const Points& list) {
    nlohmann::json result = nlohmann::json::array();
    for (const QPointF& p : list) {
        result.push_back(pointJson(p));
    }
    return result;
}

Wall wallFromJson(const nlohmann::json& json, const std::string& where) {
    if (!json.is_object()) {
        fail(where, "must be an object");
    }
    Wall wall;
    wall.line = points(json, "line", where, 2);
    wall.closed = flag(json, "closed", where, false);
    wall.thickness = number(json, "thickness", where);
    wall.height = number(json, "height", where);
    wall.baseLevel = number(json, "baseLevel", where, 0.0);
    const std::string exterior = text(json, "exterior", where, "right");
    if (exterior != "right" && exterior != "left") {
        fail(where, "\"exterior\" must be \"right\" or \"left\"");
    }
    wall.exteriorOnRight = exterior == "right";
    if (wall.thickness <= 0 || wall.height <= 0) {
        fail(where, "thickness and height must be positive");
    }
    if (wall.closed && wall.line.size() < 3) {
        fail(where, "a closed wall needs at least 3 points");
    }
    return wall;
}

RoofFace faceFromJson(const nlohmann::json& json, const std::string& where) {
    if (!json.is_object()) {
        fail(where, "must be an object");
    }
    RoofFace face;
    const std::vector<QPointF> outline = points(json, "outline", where, 3);
    face.outline = QPolygonF(QList<QPointF>(outline.begin(), outline.end()));
    const std::vector<QPointF> eaves = points(json, "eaves", where, 2);
    if (eaves.size() != 2 || plan::length(eaves[1] - eaves[0]) <= 0) {
        fail(where, "\"eaves\" must be two different points");
    }
    face.eaves = QLineF(eaves[0], eaves[1]);
    face.eavesHeight = number(json, "eavesHeight", where);
    face.pitch = number(json, "pitch", where);
    face.direction = number(json, "direction", where);
    face.overhang = number(json, "overhang", where);
    if (face.pitch < 0 || face.pitch >= 90) {
        fail(where, "\"pitch\" must lie from 0 to below 90 degrees");
    }
    if (face.overhang < 0) {
        fail(where, "\"overhang\" must not be negative");
    }
    // The direction must point across the eaves edge, else the face's height would not follow
    // from it; one degree of slack for hand-written files.
    const QPointF along = plan::unit(face.eaves.p2() - face.eaves.p1());
    if (std::abs(plan::dot(along, face.downslope())) > std::sin(std::numbers::pi / 180.0)) {
        fail(where, "\"direction\" must be square to the eaves edge");
    }
    return face;
}

Roof roofFromJson(const nlohmann::json& json, const std::string& where) {
    if (!json.is_object()) {
        fail(where, "must be an object");
    }
    Roof roof;
    roof.name = text(json, "name", where, "");
    roof.gutterWidth = number(json, "gutterWidth", where);
    roof.roofingThickness = number(json, "roofingThickness", where);
    if (!json.contains("faces") || !json.at("faces").is_array() || json.at("faces").empty()) {
        fail(where, "\"faces\" must be a non-empty list");
    }
    for (std::size_t i = 0; i < json.at("faces").size(); ++i) {
        roof.faces.push_back(
            faceFromJson(json.at("faces")[i], where + ".faces[" + std::to_string(i) + "]"));
    }
    return roof;
}

} // namespace

int Building::roofAt(QPointF p) const {
    for (std::size_t i = 0; i < roofs.size(); ++i) {
        if (roofs[i].faceAt(p) >= 0) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

std::optional<WallHit> Building::exteriorWallHit(QPointF p) const {
    std::optional<WallHit> best;
    for (std::size_t i = 0; i < walls.size(); ++i) {
        std::optional<WallHit> hit =
            walls[i].exteriorHit(p, clickToleranceOutside, walls[i].thickness / 2);
        if (hit && (!best || std::abs(hit->distance) < std::abs(best->distance))) {
            hit->wall = static_cast<int>(i);
            best = hit;
        }
    }
    return best;
}

Building Building::fromJson(const nlohmann::json& json) {
    if (!json.is_object()) {
        fail("top level", "must be an object");
    }
    if (text(json, "format", "top level", "") != formatName) {
        fail("top level", std::string("\"format\" must be \"") + formatName + "\"");
    }
    if (number(json, "version", "top level", 0.0) != 1.0) {
        fail("top level", "unknown \"version\" (this host reads version 1)");
    }
    Building building;
    building.name = text(json, "name", "top level", "");
    building.terrainLevel = number(json, "terrainLevel", "top level", 0.0);
    for (const char* key : {"walls", "roofs"}) {
        if (json.contains(key) && !json.at(key).is_array()) {
            fail("top level", std::string("\"") + key + "\" must be a list");
        }
    }
    const nlohmann::json empty = nlohmann::json::array();
    const nlohmann::json& walls = json.contains("walls") ? json.at("walls") : empty;
    for (std::size_t i = 0; i < walls.size(); ++i) {
        building.walls.push_back(wallFromJson(walls[i], "walls[" + std::to_string(i) + "]"));
    }
    const nlohmann::json& roofs = json.contains("roofs") ? json.at("roofs") : empty;
    for (std::size_t i = 0; i < roofs.size(); ++i) {
        building.roofs.push_back(roofFromJson(roofs[i], "roofs[" + std::to_string(i) + "]"));
    }
    return building;
}

nlohmann::json Building::toJson() const {
    nlohmann::json json = {{"format", formatName},
                           {"version", 1},
                           {"name", name},
                           {"terrainLevel", terrainLevel},
                           {"walls", nlohmann::json::array()},
                           {"roofs", nlohmann::json::array()}};
    for (const Wall& wall : walls) {
        json["walls"].push_back({{"line", pointsJson(wall.line)},
                                 {"closed", wall.closed},
                                 {"thickness", wall.thickness},
                                 {"height", wall.height},
                                 {"baseLevel", wall.baseLevel},
                                 {"exterior", wall.exteriorOnRight ? "right" : "left"}});
    }
    for (const Roof& roof : roofs) {
        nlohmann::json faces = nlohmann::json::array();
        for (const RoofFace& face : roof.faces) {
            faces.push_back(
                {{"outline", pointsJson(face.outline)},
                 {"eaves", pointsJson(std::vector<QPointF>{face.eaves.p1(), face.eaves.p2()})},
                 {"eavesHeight", face.eavesHeight},
                 {"pitch", face.pitch},
                 {"direction", face.direction},
                 {"overhang", face.overhang}});
        }
        json["roofs"].push_back({{"name", roof.name},
                                 {"gutterWidth", roof.gutterWidth},
                                 {"roofingThickness", roof.roofingThickness},
                                 {"faces", faces}});
    }
    return json;
}

Building Building::load(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw RuntimeError(RuntimeError::FileNotFound, "cannot read the building file " + path);
    }
    nlohmann::json json = nlohmann::json::parse(in, nullptr, false);
    if (json.is_discarded()) {
        throw RuntimeError(RuntimeError::HostError, path + " is not a JSON file");
    }
    try {
        return fromJson(json);
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.number(), path + ": " + error.description());
    }
}

} // namespace pluvarine
