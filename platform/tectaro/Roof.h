#pragma once

#include "platform/tectaro/RoofFace.h"

#include <string>
#include <vector>

namespace pluvarine {

// A roof of the building: its faces and the values that belong to the whole roof.
struct Roof {
    std::string name;
    double gutterWidth = 0.0;      // metres
    double roofingThickness = 0.0; // metres
    std::vector<RoofFace> faces;

    // Plan points this close to a face's outline count as on the face: a click moved onto a
    // wall face under a roof without overhang lies exactly on the outline.
    static constexpr double edgeTolerance = 0.001;

    // Index of the face at the plan point (counting from 0), or -1. A face whose outline holds
    // the point wins over one that only touches it within the tolerance.
    int faceAt(QPointF p) const;
};

} // namespace pluvarine
