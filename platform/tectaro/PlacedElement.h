#pragma once

#include "host/PlacementMatrix.h"
#include "platform/tectaro/ObjectFile.h"

#include <QMatrix4x4>
#include <string>

namespace pluvarine {

// An element of the building made from an object file and placed by the macro's matrix.
struct PlacedElement {
    ObjectFile object;
    std::string sourcePath; // where the object file was loaded from
    PlacementMatrix matrix = identity();
    bool prepared = false;

    // Object file frame to world (see TectaroPlacement).
    QMatrix4x4 worldTransform() const;
    // The reference point's plan position: where the plan view marks the element.
    QPointF planPosition() const;

    static PlacementMatrix identity();
};

} // namespace pluvarine
