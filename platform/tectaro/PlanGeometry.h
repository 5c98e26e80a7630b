#pragma once

#include <QPointF>
#include <QPolygonF>
#include <array>
#include <vector>

namespace pluvarine::plan {

// Plan geometry of the stand-in host: metres, x east, y north (counter-clockwise is positive).

double dot(QPointF a, QPointF b);
double cross(QPointF a, QPointF b);
double length(QPointF v);
QPointF unit(QPointF v);
// The normal on the right of a running direction (dx, dy): (dy, -dx), unit length.
QPointF rightNormal(QPointF direction);

// Distance from p to the segment a-b.
double distanceToSegment(QPointF p, QPointF a, QPointF b);
// Distance from p to the outline of the polygon (closed).
double distanceToOutline(const QPolygonF& polygon, QPointF p);
// Twice the signed area: positive for a counter-clockwise polygon.
double signedArea2(const QPolygonF& polygon);

// The line offset sideways by `offset` (positive: to the right of the running direction), with
// mitred joins; a closed line gives one point per corner, an open one keeps its end points'
// count and offsets them square.
std::vector<QPointF> offsetLine(const std::vector<QPointF>& line, bool closed, double offset);

// Triangles of a simple polygon (ear clipping), as indices into the polygon's points.
std::vector<std::array<int, 3>> triangulate(const QPolygonF& polygon);

} // namespace pluvarine::plan
