#pragma once

#include "host/PlacementMatrix.h"

#include <QMatrix4x4>
#include <QVector3D>

namespace pluvarine {

// How the host places an element: its reading of the placement matrix and of the object
// file's frame.
//
// The object file's frame is the frame an object is modelled in for hanging on a wall: z up,
// metres, the wall face the plane x = 0 and the object in front of it on -x (the downpipe
// assembly: assembly on -x, y along the wall, vertical origin at half its height).
//
// The reference point that the matrix's translation locates is the centre of the object's
// bounding box (its drawn geometry; auxiliary helpers left out).
//
// The matrix acts on column vectors, world = M * (x, y, z, 1): the rotation about the
// vertical in the upper-left block, the translation in column 3. The host's element frame
// faces +x while an object file faces -x, so the object is turned half round about the
// vertical on loading:
//
//     world = M * Rz(180 deg) * (p - reference)
//
// With the macro's rotation a = -d - 270 deg, M sends the element's +x along (sin d, -cos d),
// the downslope of the roof face, which is the wall's outward normal: the object's front
// points away from the building on every side (reading the rotation block transposed would
// turn it into the building on two of the four sides). The macro moves the reference point
// half the wall offset (plus 8 mm) outwards from the picked point. For the downpipe the box
// reaches from the gutter outlet's outer rim (about the wall offset out) to the clamps' wall
// brackets (129.4 mm behind the pipe's wall-side surface), so the downpipe touches the wall
// face with its clamps, whose brackets reach into the wall, and the pipe stands clear of it
// (52.7 mm for the constructions led back to the wall, about half the wall offset for the
// continuous pipe). A reference point that put the object's wall plane x = 0 on the face would
// set those pipes flush, and with them the wider standpipe and cap on the pipe's axis 12.5 and
// 14.5 mm into the wall.
class TectaroPlacement {
public:
    // The reference point of an object with the given bounding box (object file frame).
    static QVector3D referencePoint(const QVector3D& boundsMin, const QVector3D& boundsMax);
    // The placement matrix as a transform (M(r, c) at row r, column c).
    static QMatrix4x4 toMatrix4x4(const PlacementMatrix& matrix);
    // Object file frame to world.
    static QMatrix4x4 worldTransform(const PlacementMatrix& matrix, const QVector3D& boundsMin,
                                     const QVector3D& boundsMax);
};

} // namespace pluvarine
