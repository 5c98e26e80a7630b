#include "platform/tectaro/Roof.h"

#include "platform/tectaro/PlanGeometry.h"

namespace pluvarine {

int Roof::faceAt(QPointF p) const {
    for (std::size_t i = 0; i < faces.size(); ++i) {
        if (faces[i].outline.containsPoint(p, Qt::OddEvenFill)) {
            return static_cast<int>(i);
        }
    }
    int nearest = -1;
    double nearestDistance = edgeTolerance;
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const double distance = plan::distanceToOutline(faces[i].outline, p);
        if (distance <= nearestDistance) {
            nearest = static_cast<int>(i);
            nearestDistance = distance;
        }
    }
    return nearest;
}

} // namespace pluvarine
