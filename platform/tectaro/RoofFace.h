#pragma once

#include <QLineF>
#include <QPointF>
#include <QPolygonF>

namespace pluvarine {

// One plane face of a roof. The outline is the face's plan outline including the overhang; the
// eaves edge is the lower edge where the gutter hangs. `direction` (degrees) is the direction in
// which the face falls, as the host reports it: (sin d, -cos d) points downslope, away from the
// building (0: -y, 90: +x, 180: +y, 270: -x). Lengths in metres, angles in degrees.
struct RoofFace {
    QPolygonF outline;
    QLineF eaves;
    double eavesHeight = 0.0;
    double pitch = 0.0;
    double direction = 0.0;
    double overhang = 0.0;

    // Unit plan vector pointing downslope.
    QPointF downslope() const;
    // Height of the face over the plan point: the eaves height plus the distance from the eaves
    // line inwards times tan(pitch).
    double heightAt(QPointF p) const;
    // p inside the outline, or within `tolerance` metres of it.
    bool contains(QPointF p, double tolerance) const;
};

} // namespace pluvarine
