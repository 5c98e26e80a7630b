#pragma once

#include "platform/tectaro/Roof.h"
#include "platform/tectaro/Wall.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace pluvarine {

// The building model of the stand-in host: walls, roofs and the terrain level, in metres.
//
// Building file (JSON):
//   {"format": "tectaro-building", "version": 1, "name": "...", "terrainLevel": 0.0,
//    "walls": [{"line": [[x, y], ...], "closed": true, "thickness": 0.3, "height": 3.0,
//               "baseLevel": 0.0, "exterior": "right" | "left"}],
//    "roofs": [{"name": "...", "gutterWidth": 0.12, "roofingThickness": 0.06,
//               "faces": [{"outline": [[x, y], ...], "eaves": [[x, y], [x, y]],
//                          "eavesHeight": 2.8, "pitch": 30, "direction": 0,
//                          "overhang": 0.3}]}]}
// A wall's line is its centre line; "exterior" names the side of the running direction that
// faces outside (default right: lines run counter-clockwise round the building). A face's
// direction is the host's: (sin d, -cos d) points downslope.
struct Building {
    std::string name;
    double terrainLevel = 0.0;
    std::vector<Wall> walls;
    std::vector<Roof> roofs;

    // How far outside a wall's exterior face a click still counts as on that face.
    static constexpr double clickToleranceOutside = 0.25;

    bool isEmpty() const { return walls.empty() && roofs.empty(); }

    // Index of the roof with a face at the plan point (the overhang included), or -1.
    int roofAt(QPointF p) const;
    // A click on the exterior side of a wall: from the middle of the wall to
    // clickToleranceOutside outside its exterior face; the nearest face wins.
    std::optional<WallHit> exteriorWallHit(QPointF p) const;

    // Throws RuntimeError (HostError) naming the offending entry when the file is malformed.
    static Building fromJson(const nlohmann::json& json);
    nlohmann::json toJson() const;
    static Building load(const std::string& path);
};

} // namespace pluvarine
