#pragma once

#include <QPointF>
#include <QPolygonF>
#include <optional>
#include <vector>

namespace pluvarine {

// Where a click lands on the exterior face of a wall.
struct WallHit {
    int wall = -1;         // index of the wall in the building
    int segment = -1;      // segment of its line
    QPointF facePoint;     // the click moved onto the exterior face
    QPointF outward;       // unit normal of the face, pointing away from the building
    double distance = 0.0; // how far outside the face the click was (negative: inside)
};

// A wall of the building. Its plan line is the wall's centre line; the thickness lies half on
// either side. The exterior is on the right of the line's running direction (a line that runs
// counter-clockwise round the building) unless `exteriorOnRight` is false.
struct Wall {
    std::vector<QPointF> line;
    bool closed = false;
    double thickness = 0.3;
    double height = 3.0;
    double baseLevel = 0.0;
    bool exteriorOnRight = true;

    // The exterior and interior faces as lines with mitred corners (one point per line point).
    std::vector<QPointF> exteriorFace() const;
    std::vector<QPointF> interiorFace() const;
    // Plan outline of each segment: exterior start, exterior end, interior end, interior start.
    std::vector<QPolygonF> segmentOutlines() const;
    int segmentCount() const;

    // The exterior face nearest to p when p lies at most `outside` metres outside it or at most
    // `inside` metres inside (within the segment's length); nullopt otherwise.
    std::optional<WallHit> exteriorHit(QPointF p, double outside, double inside) const;
};

} // namespace pluvarine
