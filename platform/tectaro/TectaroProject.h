#pragma once

#include "platform/tectaro/Building.h"
#include "platform/tectaro/PlacedElement.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pluvarine {

// An open project of the stand-in host: the building, the elements inserted into it and the
// macros' data blocks by id.
//
// Project file (".tproj"): CBOR (RFC 8949) of
//   {"format": "tectaro-project", "version": 1, "saveNumber": n,
//    "building": {building file content},
//    "elements": [{"name": " 1.tob", "source": "/path/ 1.tob", "object": <GLB, bytes>,
//                  "matrix": [16 numbers, M(0,0), M(1,0), ... M(3,3)], "prepared": true}],
//    "macroData": [{"id": 548199592, "data": <bytes>}]}
// Bytes are CBOR byte strings, so the macro's archive is stored as it is. Older project files,
// the same content as JSON text with the bytes in base64, are still read.
struct TectaroProject {
    std::shared_ptr<const Building> building = std::make_shared<const Building>();
    std::vector<std::shared_ptr<PlacedElement>> elements;
    std::map<std::int32_t, std::string> macroData;
    std::string path;            // empty until saved or opened
    std::int32_t saveNumber = 0; // counts the saves of the project

    nlohmann::json toJson() const;
    // Throws RuntimeError naming what is wrong.
    static TectaroProject fromJson(const nlohmann::json& json);

    // Writes through AtomicFile, flushed to the disk: a failed save leaves the previous file as
    // it was. False with a reason on failure.
    bool save(const std::string& file, std::string* error) const;
    static TectaroProject load(const std::string& file);
};

} // namespace pluvarine
