#include "platform/tectaro/RoofFace.h"

#include "platform/tectaro/PlanGeometry.h"

#include <cmath>
#include <numbers>

namespace pluvarine {

namespace {
double radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}
} // namespace

QPointF RoofFace::downslope() const {
    const double d = radians(direction);
    return QPointF(std::sin(d), -std::cos(d));
}

double RoofFace::heightAt(QPointF p) const {
    // The eaves line's normal that points up the slope; the file's direction decides which of
    // the two normals that is, so an eaves edge may be given in either running direction.
    QPointF inward = plan::rightNormal(eaves.p2() - eaves.p1());
    if (plan::dot(inward, downslope()) > 0) {
        inward = -inward;
    }
    const double distance = plan::dot(p - eaves.p1(), inward);
    return eavesHeight + distance * std::tan(radians(pitch));
}

bool RoofFace::contains(QPointF p, double tolerance) const {
    return outline.containsPoint(p, Qt::OddEvenFill) ||
           plan::distanceToOutline(outline, p) <= tolerance;
}

} // namespace pluvarine
