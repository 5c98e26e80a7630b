"""The wall pick: where a click in plan lands on the exterior face of the building's walls.

The exterior faces are the outer boundary of the walls' plan footprint (the union of their
bottom faces), so it does not matter how the walls were drawn or which side of each was meant
to face out. A click counts from half a wall's width inside the face to 0.25 m outside it (as
in the stand-in host); it is moved onto the face. Millimetres throughout.
"""

import FreeCAD

from pluvarine_freecad import plan
from pluvarine_freecad.roofs import object_type

CLICK_TOLERANCE_OUTSIDE_MM = 250.0


def walls_of(doc):
    return [o for o in doc.Objects if object_type(o) == "Wall" and not o.Shape.isNull()]


def _footprint_faces(walls):
    faces = []
    for wall in walls:
        for face in wall.Shape.Faces:
            normal = face.normalAt(0, 0)
            if normal.z < -0.999999 and abs(face.BoundBox.ZLength) < 1e-6:
                flat = face.copy()
                flat.translate(FreeCAD.Vector(0, 0, -flat.BoundBox.ZMin))
                faces.append(flat)
    return faces


def exterior_outlines(walls):
    """Counter-clockwise plan outlines of the walls' outer boundaries: [[(x, y), ...], ...]."""
    faces = _footprint_faces(walls)
    if not faces:
        return []
    union = faces[0].fuse(faces[1:]) if len(faces) > 1 else faces[0]
    union = union.removeSplitter()
    outlines = []
    for face in union.Faces:
        points = []
        for v in face.OuterWire.discretize(QuasiDeflection=1.0):
            q = (v.x, v.y)
            if not points or abs(q[0] - points[-1][0]) + abs(q[1] - points[-1][1]) > 1e-9:
                points.append(q)
        if len(points) > 1 and abs(points[0][0] - points[-1][0]) + abs(
                points[0][1] - points[-1][1]) <= 1e-9:
            points.pop()
        if len(points) < 3:
            continue
        if plan.signed_area2(points) < 0:
            points.reverse()
        outlines.append(points)
    return outlines


class WallHit:
    def __init__(self, face_point, outward, distance):
        self.face_point = face_point
        self.outward = outward
        self.distance = distance


def exterior_hit(outlines, p, inside):
    """The nearest exterior face within reach of p, or None."""
    best = None
    for points in outlines:
        n = len(points)
        for i in range(n):
            a, b = points[i], points[(i + 1) % n]
            along = plan.unit(plan.sub(b, a))
            length = plan.dot(plan.sub(b, a), along)
            if length <= 0:
                continue
            outward = plan.right_normal(along)
            t = plan.dot(plan.sub(p, a), along)
            distance = plan.dot(plan.sub(p, a), outward)
            if t < 0 or t > length or distance > CLICK_TOLERANCE_OUTSIDE_MM or distance < -inside:
                continue
            if best is None or abs(distance) < abs(best.distance):
                best = WallHit((a[0] + t * along[0], a[1] + t * along[1]), outward, distance)
    return best


def pick(doc, p):
    """(valid, (x, y)) of a click at plan point p (mm), as the host reports it."""
    walls = walls_of(doc)
    if not walls:
        return False, p
    inside = max(float(getattr(w, "Width", 0.0)) for w in walls) / 2
    hit = exterior_hit(exterior_outlines(walls), p, inside)
    if hit is None:
        return False, p
    return True, hit.face_point
