#pragma once

#include "data/generator/MeshBuilder.h"
#include "data/generator/Opening.h"

#include <string>
#include <vector>

namespace pluvarine {

// One part of the catalogue as modelled: its file stem, its mesh about its reference point and
// its openings, in millimetres in the scene frame.
struct PartModel {
    std::string name;
    MeshBuilder mesh;
    std::vector<Opening> openings;
    bool auxiliary = false; // not drawn and not counted when fitting the view
};

} // namespace pluvarine
