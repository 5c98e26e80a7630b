#include "platform/tectaro/PlacedElement.h"

#include "platform/tectaro/TectaroPlacement.h"

namespace pluvarine {

QMatrix4x4 PlacedElement::worldTransform() const {
    return TectaroPlacement::worldTransform(matrix, object.boundsMin, object.boundsMax);
}

QPointF PlacedElement::planPosition() const {
    return QPointF(matrix.at(0, 3), matrix.at(1, 3));
}

PlacementMatrix PlacedElement::identity() {
    PlacementMatrix m;
    for (int i = 0; i < 4; ++i) {
        m.at(i, i) = 1.0f;
    }
    return m;
}

} // namespace pluvarine
