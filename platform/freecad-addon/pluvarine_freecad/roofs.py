"""The roof and level queries the macro makes, answered from FreeCAD's Arch model.

A roof is read from its base wire (the line where the roof's underside meets the walls) and its
per-edge properties: each edge carries one sloped face with its angle (pitch), overhang and
thickness. The face above a plan point is the lowest of the sloped faces there (the roof's
surface), within the roof's eaves outline: the base edges moved outwards by their overhangs.
The face's direction is the host's: (sin d, -cos d) points down the fall line, which is the base
edge's outward normal. Lengths are millimetres inside this module, as FreeCAD keeps them.
"""

import math

import FreeCAD
import Part

from pluvarine_freecad import plan

# The add-on's own property of Arch roofs: the gutter's width (a length, editable in the
# property editor). A roof without it has this default: 150 mm, a common half-round gutter.
GUTTER_WIDTH_PROPERTY = "GutterWidth"
DEFAULT_GUTTER_WIDTH_MM = 150.0
# Plan points this close to the eaves outline are on the roof (1 mm, as the stand-in host).
EDGE_TOLERANCE_MM = 1.0


def object_type(obj):
    proxy = getattr(obj, "Proxy", None)
    return getattr(proxy, "Type", None)


def is_roof(obj):
    return object_type(obj) == "Roof"


def add_gutter_width(roof):
    """Gives an Arch roof the gutter width property, when it has none yet."""
    if GUTTER_WIDTH_PROPERTY not in roof.PropertiesList:
        roof.addProperty("App::PropertyLength", GUTTER_WIDTH_PROPERTY, "Pluvarine",
                         "Width of the roof's gutter, read by the downpipe macro")
        setattr(roof, GUTTER_WIDTH_PROPERTY, DEFAULT_GUTTER_WIDTH_MM)


def gutter_width_mm(roof):
    value = getattr(roof, GUTTER_WIDTH_PROPERTY, None)
    return DEFAULT_GUTTER_WIDTH_MM if value is None else float(value)


class RoofEdge:
    def __init__(self, a, b, z, angle, overhang, thickness):
        self.a = a                  # plan points of the base edge, mm
        self.b = b
        self.z = z                  # height of the base edge, mm
        self.angle = angle          # pitch, degrees
        self.overhang = overhang    # mm
        self.thickness = thickness  # mm
        self.along = plan.unit(plan.sub(b, a))
        self.outward = (0.0, 0.0)

    def sloped(self):
        return 0.0 <= self.angle < 90.0

    def inward_distance(self, p):
        return -plan.dot(plan.sub(p, self.a), self.outward)

    def height_at(self, p):
        return self.z + self.inward_distance(p) * math.tan(math.radians(self.angle))

    def direction(self):
        return plan.direction_degrees(self.outward)


def _value(values, i, fallback):
    return float(values[i]) if i < len(values) else (float(values[0]) if values else fallback)


def roof_edges(roof):
    """The roof's base edges in the order of its per-edge properties, or [] without a wire."""
    base = getattr(roof, "Base", None)
    shape = getattr(base, "Shape", None)
    if shape is None or shape.isNull() or shape.Solids:
        return []
    if shape.Faces and roof.Face:
        wire = shape.Faces[roof.Face - 1].Wires[0]
    elif shape.Wires:
        wire = shape.Wires[0]
    else:
        return []
    if not wire.isClosed():
        return []
    edges = Part.__sortEdges__(wire.Edges)
    points = []
    for edge in edges:
        points.append((edge.Vertexes[0].Point, edge.Vertexes[-1].Point))
    if getattr(roof, "Flip", False):
        points = [(b, a) for a, b in reversed(points)]
    result = []
    for i, (a, b) in enumerate(points):
        result.append(RoofEdge((a.x, a.y), (b.x, b.y), (a.z + b.z) / 2,
                               _value(roof.Angles, i, 45.0), _value(roof.Overhang, i, 0.0),
                               _value(roof.Thickness, i, 0.0)))
    ccw = plan.signed_area2([e.a for e in result]) > 0
    for e in result:
        normal = plan.right_normal(plan.sub(e.b, e.a))
        e.outward = normal if ccw else (-normal[0], -normal[1])
    return result


def eaves_outline(edges):
    """The base edges moved outwards by their overhangs, meeting at their corners."""
    lines = []
    for e in edges:
        start = (e.a[0] + e.overhang * e.outward[0], e.a[1] + e.overhang * e.outward[1])
        lines.append((start, e.along))
    outline = []
    n = len(lines)
    for i in range(n):
        corner = plan.line_intersection(lines[i - 1][0], lines[i - 1][1], lines[i][0],
                                        lines[i][1])
        outline.append(corner if corner is not None else lines[i][0])
    return outline


class RoofQuery:
    """One Arch roof as the macro's roof, roof list entry and roof data see it."""

    def __init__(self, roof):
        self.roof = roof
        self.edges = roof_edges(roof)
        self.outline = eaves_outline(self.edges) if self.edges else []

    def covers(self, p):
        return bool(self.outline) and plan.contains(self.outline, p, EDGE_TOLERANCE_MM)

    def face_at(self, p):
        """(face index from 0, height in mm) of the roof surface over p, or None."""
        if not self.covers(p):
            return None
        best = None
        for i, e in enumerate(self.edges):
            if not e.sloped():
                continue
            h = e.height_at(p)
            if best is None or h < best[1] - 1e-9:
                best = (i, h)
        return best

    def face(self, number):
        """The edge of face `number`, counting from 1."""
        if not 1 <= number <= len(self.edges):
            raise ValueError("the roof has no face %d" % number)
        return self.edges[number - 1]

    def gutter_width_mm(self):
        return gutter_width_mm(self.roof)

    def roofing_thickness_mm(self):
        """The roof's thickness: the first edge's (the macro asks it of the whole roof)."""
        return self.edges[0].thickness if self.edges else 0.0


def roofs_of(doc):
    return [o for o in doc.Objects if is_roof(o)]


def find_roof_at(doc, p):
    """The first roof of the document whose eaves outline holds the plan point (mm), or None."""
    for roof in roofs_of(doc):
        query = RoofQuery(roof)
        if query.covers(p):
            return query
    return None


def _is_building(obj):
    return getattr(obj, "IfcType", None) == "Building" or object_type(obj) == "Building"


def level_at(doc, p):
    """Height in mm of the site's terrain at the plan point; else the building's base level."""
    for site in doc.Objects:
        if object_type(site) != "Site" or site.Terrain is None:
            continue
        z = _terrain_height(site.Terrain, p)
        if z is not None:
            return z
    for building in doc.Objects:
        if _is_building(building):
            return building.Placement.Base.z
    return 0.0


def _terrain_height(terrain, p):
    if hasattr(terrain, "Mesh"):
        # Meshes compute in single precision: start the ray just above the terrain.
        top = terrain.Mesh.BoundBox.ZMax + 1.0
        hits = terrain.Mesh.nearestFacetOnRay((p[0], p[1], top), (0.0, 0.0, -1.0))
        return max(v[2] for v in hits.values()) if hits else None
    shape = getattr(terrain, "Shape", None)
    if shape is None or shape.isNull():
        return None
    box = shape.BoundBox
    line = Part.makeLine(FreeCAD.Vector(p[0], p[1], box.ZMin - 1.0),
                         FreeCAD.Vector(p[0], p[1], box.ZMax + 1.0))
    hits = shape.section(line).Vertexes
    return max(v.Point.z for v in hits) if hits else None
