"""Downpipes in the FreeCAD document: one mesh feature per inserted object file.

An element is placed as the host link defines it: world = M * Rz(180 deg) * (p - c), p a point
of the object file, c the centre of the box of its drawn geometry. The mesh keeps
Rz(180 deg) * (p - c) in millimetres and the object's placement is M, so the object's
Placement is the element matrix itself. Each facet keeps its material's colour.
"""

import os

import FreeCAD
import Mesh

TYPE = "Downpipe"
IFC_TYPE = "Pipe Segment"
IFC_OBJECT_TYPE = "RAINWATERPIPE"


def local_mesh(content):
    """(Mesh.Mesh, facet colours) of the drawn items, turned and centred as the host places."""
    bounds = content.bounds()
    points = []
    facets = []
    colours = []
    if bounds is None:
        return Mesh.Mesh(), colours
    c = [(bounds[0][k] + bounds[1][k]) / 2 for k in range(3)]
    V = FreeCAD.Vector
    for item in content.drawn_items():
        first = len(points)
        # Rz(180 deg): (x, y, z) -> (-x, -y, z); metres to millimetres.
        points.extend(V(-(p[0] - c[0]) * 1000.0, -(p[1] - c[1]) * 1000.0, (p[2] - c[2]) * 1000.0)
                      for p in item.points)
        facets.extend((first + t[0], first + t[1], first + t[2]) for t in item.triangles)
        colours.extend([item.colour[:3]] * len(item.triangles))
    return Mesh.Mesh((points, facets)), colours


def placement_of(matrix):
    """FreeCAD placement of a host matrix given row index fastest (metres)."""
    m = FreeCAD.Matrix()
    rows = [[float(matrix[c * 4 + r]) for c in range(4)] for r in range(4)]
    (m.A11, m.A12, m.A13, m.A14) = (rows[0][0], rows[0][1], rows[0][2], rows[0][3] * 1000.0)
    (m.A21, m.A22, m.A23, m.A24) = (rows[1][0], rows[1][1], rows[1][2], rows[1][3] * 1000.0)
    (m.A31, m.A32, m.A33, m.A34) = (rows[2][0], rows[2][1], rows[2][2], rows[2][3] * 1000.0)
    return FreeCAD.Placement(m)


class Downpipe:
    """Proxy of a downpipe: a mesh feature that IFC exporters see as a rain-water pipe."""

    def __init__(self, obj):
        obj.Proxy = self
        self.Type = TYPE
        self.set_properties(obj)

    PROPERTIES = [
        ("App::PropertyString", "SourceFile", "The object file the downpipe was made from"),
        ("App::PropertyFloatList", "ElementMatrix",
         "The placement matrix the macro gave (metres, row index fastest)"),
        ("App::PropertyString", "ObjectName", "The object's name in its object file"),
        ("App::PropertyColorList", "FaceColors",
         "The colour of each facet, from the object file's materials"),
    ]

    def set_properties(self, obj):
        props = obj.PropertiesList
        for kind, name, tip in self.PROPERTIES:
            if name not in props:
                obj.addProperty(kind, name, "Pluvarine", tip)
        if "IfcType" not in props:
            obj.addProperty("App::PropertyString", "IfcType", "IFC", "The IFC type")
            obj.addProperty("App::PropertyString", "PredefinedType", "IFC", "IFC predefined type")
            obj.addProperty("App::PropertyString", "ObjectType", "IFC", "IFC object type")
            obj.IfcType = IFC_TYPE
            obj.PredefinedType = "USERDEFINED"
            obj.ObjectType = IFC_OBJECT_TYPE

    def onDocumentRestored(self, obj):
        self.set_properties(obj)

    def execute(self, obj):
        pass

    def __getstate__(self):
        return {"Type": self.Type}

    def __setstate__(self, state):
        self.Type = state.get("Type", TYPE) if state else TYPE


def is_downpipe(obj):
    return getattr(getattr(obj, "Proxy", None), "Type", None) == TYPE


def create(doc, content, source, label):
    """A new downpipe object from read object-file content, at the origin until placed."""
    obj = doc.addObject("Mesh::FeaturePython", "Downpipe")
    Downpipe(obj)
    mesh, colours = local_mesh(content)
    obj.Mesh = mesh
    obj.FaceColors = colours
    obj.SourceFile = source
    obj.ObjectName = content.scene_name
    obj.Label = label
    if FreeCAD.GuiUp:
        obj.ViewObject.Proxy = 0
        if colours:
            obj.ViewObject.Coloring = True
    return obj


def set_matrix(obj, matrix):
    obj.ElementMatrix = [float(v) for v in matrix]
    obj.Placement = placement_of(matrix)


def world_box(obj):
    """(min, max) in metres of the placed mesh (a feature's mesh carries its placement)."""
    box = obj.Mesh.BoundBox
    return ([box.XMin / 1000, box.YMin / 1000, box.ZMin / 1000],
            [box.XMax / 1000, box.YMax / 1000, box.ZMax / 1000])


def label_for(path):
    """"Downpipe N" after the object file " N.tob"."""
    stem = os.path.splitext(os.path.basename(path))[0].strip()
    return "Downpipe " + stem
