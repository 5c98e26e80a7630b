"""Builds an Arch model (site, building, walls, roofs) from a building file of the stand-in host.

The building file is JSON in metres (see platform/tectaro/Building.h). Each wall line becomes
one Arch wall per segment, extruded from the segment's plan outline with mitred corners. Each
roof becomes one Arch roof on a base wire at the height where its faces meet the walls: every
face's eaves edge, moved inwards by its overhang, is one edge of that wire, carrying the face's
pitch, overhang and the roof's roofing thickness; the roof gets the gutter width. The site's
terrain is a flat mesh at the terrain level (a mesh: FreeCAD 0.20's site cannot save the
areas it computes for a terrain shape).
"""

import json
import math

import FreeCAD
import Mesh
import Part

from pluvarine_freecad import plan, roofs

FORMAT = "tectaro-building"
V = FreeCAD.Vector


class BuildingFileError(ValueError):
    pass


def _fail(where, what):
    raise BuildingFileError("building file: %s: %s" % (where, what))


def _number(obj, key, where, fallback=None):
    if key not in obj:
        if fallback is not None:
            return fallback
        _fail(where, '"%s" is missing' % key)
    value = obj[key]
    if isinstance(value, bool) or not isinstance(value, (int, float)) or not math.isfinite(value):
        _fail(where, '"%s" must be a number' % key)
    return float(value)


def _points(obj, key, where, minimum):
    value = obj.get(key)
    if not isinstance(value, list):
        _fail(where, '"%s" must be a list of points' % key)
    result = []
    for i, p in enumerate(value):
        if (not isinstance(p, list) or len(p) != 2
                or not all(isinstance(c, (int, float)) and not isinstance(c, bool) for c in p)):
            _fail("%s.%s[%d]" % (where, key, i), "a point must be [x, y]")
        result.append((float(p[0]), float(p[1])))
    if len(result) < minimum:
        _fail(where, '"%s" needs at least %d points' % (key, minimum))
    return result


def _list(obj, key, where):
    value = obj.get(key, [])
    if not isinstance(value, list):
        _fail(where, '"%s" must be a list' % key)
    return value


def load(path):
    try:
        with open(path, "rb") as f:
            data = json.loads(f.read().decode("utf-8"))
    except OSError as error:
        raise BuildingFileError("cannot read the building file %s: %s" % (path, error)) from None
    except ValueError:
        raise BuildingFileError("%s is not a JSON file" % path) from None
    return data


def _feature(doc, name, shape):
    obj = doc.addObject("Part::Feature", name)
    obj.Shape = shape
    return obj


def _mm(p, z):
    return V(p[0] * 1000.0, p[1] * 1000.0, z * 1000.0)


def wall_outlines(wall, where):
    """Plan outlines of a wall's segments: exterior start, exterior end, interior end, start."""
    line = _points(wall, "line", where, 2)
    closed = wall.get("closed", False)
    if not isinstance(closed, bool):
        _fail(where, '"closed" must be true or false')
    if closed and len(line) < 3:
        _fail(where, "a closed wall needs at least 3 points")
    exterior = wall.get("exterior", "right")
    if exterior not in ("right", "left"):
        _fail(where, '"exterior" must be "right" or "left"')
    half = _number(wall, "thickness", where) / 2
    side = 1.0 if exterior == "right" else -1.0
    outer = plan.offset_line(line, closed, side * half)
    inner = plan.offset_line(line, closed, -side * half)
    n = len(line)
    segments = n if closed else n - 1
    return [[outer[i], outer[(i + 1) % n], inner[(i + 1) % n], inner[i]] for i in range(segments)]


def roof_base(roof, where):
    """(corners of the base wire in order, height, per-edge [(pitch, overhang, run)]) in metres."""
    faces = _list(roof, "faces", where)
    if not faces:
        _fail(where, '"faces" must be a non-empty list')
    lines = []
    for i, face in enumerate(faces):
        fw = "%s.faces[%d]" % (where, i)
        if not isinstance(face, dict):
            _fail(fw, "must be an object")
        outline = _points(face, "outline", fw, 3)
        eaves = _points(face, "eaves", fw, 2)
        if len(eaves) != 2 or eaves[0] == eaves[1]:
            _fail(fw, '"eaves" must be two different points')
        pitch = _number(face, "pitch", fw)
        direction = _number(face, "direction", fw)
        overhang = _number(face, "overhang", fw)
        eaves_height = _number(face, "eavesHeight", fw)
        if not 0 <= pitch < 90:
            _fail(fw, '"pitch" must lie from 0 to below 90 degrees')
        if overhang < 0:
            _fail(fw, '"overhang" must not be negative')
        d = math.radians(direction)
        down = (math.sin(d), -math.cos(d))
        along = plan.unit(plan.sub(eaves[1], eaves[0]))
        if abs(plan.dot(along, down)) > math.sin(math.radians(1.0)):
            _fail(fw, '"direction" must be square to the eaves edge')
        start = (eaves[0][0] - overhang * down[0], eaves[0][1] - overhang * down[1])
        height = eaves_height + overhang * math.tan(math.radians(pitch))
        run = max(-plan.dot(plan.sub(q, start), down) for q in outline)
        lines.append({"start": start, "down": down, "height": height, "pitch": pitch,
                      "overhang": overhang, "run": max(run, 0.001), "direction": direction % 360})
    # Round the building counter-clockwise, as the faces' directions turn, from the first face.
    first = lines[0]["direction"]
    lines.sort(key=lambda f: (f["direction"] - first) % 360)
    heights = [f["height"] for f in lines]
    if max(heights) - min(heights) > 0.001:
        _fail(where, "its faces meet the walls at different heights; an Arch roof needs one")
    corners = []
    n = len(lines)
    for i in range(n):
        before, here = lines[i - 1], lines[i]
        corner = plan.line_intersection(before["start"], (-before["down"][1], before["down"][0]),
                                        here["start"], (-here["down"][1], here["down"][0]))
        if corner is None:
            _fail(where, "two neighbouring faces are parallel")
        corners.append(corner)
    edges = [(f["pitch"], f["overhang"], f["run"]) for f in lines]
    return corners, sum(heights) / n, edges


def build(doc, data):
    """Adds the building file's model to the document; returns the site."""
    import Arch  # the Arch workbench, loaded only when a building is made

    if not isinstance(data, dict):
        _fail("top level", "must be an object")
    if data.get("format") != FORMAT:
        _fail("top level", '"format" must be "%s"' % FORMAT)
    if _number(data, "version", "top level", 0.0) != 1.0:
        _fail("top level", 'unknown "version" (version 1 is read)')
    terrain = _number(data, "terrainLevel", "top level", 0.0)
    walls = _list(data, "walls", "top level")
    roof_list = _list(data, "roofs", "top level")

    wall_objects = []
    for i, wall in enumerate(walls):
        where = "walls[%d]" % i
        if not isinstance(wall, dict):
            _fail(where, "must be an object")
        thickness = _number(wall, "thickness", where)
        height = _number(wall, "height", where)
        base_level = _number(wall, "baseLevel", where, 0.0)
        if thickness <= 0 or height <= 0:
            _fail(where, "thickness and height must be positive")
        for k, outline in enumerate(wall_outlines(wall, where)):
            points = [_mm(p, base_level) for p in outline]
            face = Part.Face(Part.makePolygon(points + [points[0]]))
            base = _feature(doc, "WallBase", face)
            obj = Arch.makeWall(base, width=thickness * 1000.0, height=height * 1000.0)
            obj.Label = "Wall %d.%d" % (i + 1, k + 1)
            wall_objects.append(obj)

    roof_objects = []
    for i, roof in enumerate(roof_list):
        where = "roofs[%d]" % i
        if not isinstance(roof, dict):
            _fail(where, "must be an object")
        gutter = _number(roof, "gutterWidth", where)
        roofing = _number(roof, "roofingThickness", where)
        corners, height, edges = roof_base(roof, where)
        points = [_mm(p, height) for p in corners]
        base = _feature(doc, "RoofBase", Part.makePolygon(points + [points[0]]))
        obj = Arch.makeRoof(base, angles=[e[0] for e in edges],
                            run=[e[2] * 1000.0 for e in edges], idrel=[-1] * len(edges),
                            thickness=[roofing * 1000.0] * len(edges),
                            overhang=[e[1] * 1000.0 for e in edges])
        obj.Label = roof.get("name") or "Roof %d" % (i + 1)
        roofs.add_gutter_width(obj)
        setattr(obj, roofs.GUTTER_WIDTH_PROPERTY, gutter * 1000.0)
        roof_objects.append(obj)

    building = Arch.makeBuilding(wall_objects + roof_objects)
    building.Label = data.get("name") or "Building"
    box = FreeCAD.BoundBox()
    for obj in wall_objects + roof_objects:
        for v in obj.Base.Shape.Vertexes:
            box.add(v.Point)
    margin = 10000.0
    if not box.isValid():
        box = FreeCAD.BoundBox(0, 0, 0, 0, 0, 0)
    x0, y0 = box.XMin - margin, box.YMin - margin
    x1, y1 = box.XMax + margin, box.YMax + margin
    z = terrain * 1000.0
    ground = doc.addObject("Mesh::Feature", "Terrain")
    ground.Mesh = Mesh.Mesh(([V(x0, y0, z), V(x1, y0, z), V(x1, y1, z), V(x0, y1, z)],
                             [(0, 1, 2), (0, 2, 3)]))
    site = Arch.makeSite([building])
    site.Terrain = ground
    site.Label = "Site"
    doc.recompute()
    return site
