"""Reads glTF 2.0 binary files (the object files Pluvarine exports) with the standard library.

The result is in FreeCAD's frame: z up, metres. glTF is y up, so every position is turned by
+90 degrees about x: (x, y, z) -> (x, -z, y). Extras are flat, as Pluvarine writes them: a node
(or the whole file, in the asset's extras) with "auxiliary": true is a helper, never drawn.
"""

import json
import math
import struct

GLB_MAGIC = 0x46546C67
CHUNK_JSON = 0x4E4F534A
CHUNK_BIN = 0x004E4942

COMPONENTS = {"SCALAR": 1, "VEC2": 2, "VEC3": 3, "VEC4": 4, "MAT4": 16}
COMPONENT_FORMATS = {5120: "b", 5121: "B", 5122: "h", 5123: "H", 5125: "I", 5126: "f"}
TRIANGLES = 4


class GlbError(ValueError):
    """The bytes are not a glTF binary this reader understands."""


def identity():
    return [[1.0 if r == c else 0.0 for c in range(4)] for r in range(4)]


def multiply(a, b):
    return [[sum(a[r][k] * b[k][c] for k in range(4)) for c in range(4)] for r in range(4)]


def transform_point(m, p):
    return tuple(m[r][0] * p[0] + m[r][1] * p[1] + m[r][2] * p[2] + m[r][3] for r in range(3))


# The turn from glTF's y-up frame to a z-up frame.
Y_UP_TO_Z_UP = [[1.0, 0.0, 0.0, 0.0], [0.0, 0.0, -1.0, 0.0], [0.0, 1.0, 0.0, 0.0],
                [0.0, 0.0, 0.0, 1.0]]


def node_matrix(node):
    if "matrix" in node:
        m = node["matrix"]
        if len(m) != 16:
            raise GlbError("a node matrix needs 16 numbers")
        return [[float(m[c * 4 + r]) for c in range(4)] for r in range(4)]  # column-major
    result = identity()
    t = node.get("translation", [0.0, 0.0, 0.0])
    x, y, z, w = node.get("rotation", [0.0, 0.0, 0.0, 1.0])
    s = node.get("scale", [1.0, 1.0, 1.0])
    rotation = [[1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)],
                [2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)],
                [2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)]]
    for r in range(3):
        for c in range(3):
            result[r][c] = rotation[r][c] * s[c]
        result[r][3] = float(t[r])
    return result


class Item:
    """One triangle mesh primitive, its points already in the file's z-up frame."""

    def __init__(self, name, points, triangles, colour, auxiliary):
        self.name = name
        self.points = points          # [(x, y, z), ...] metres
        self.triangles = triangles    # [(i, j, k), ...] into points
        self.colour = colour          # (r, g, b, a), 0..1
        self.auxiliary = auxiliary


class GlbContent:
    def __init__(self):
        self.scene_name = ""
        self.scene_extras = {}
        self.auxiliary = False
        self.items = []

    def drawn_items(self):
        return [] if self.auxiliary else [i for i in self.items if not i.auxiliary]

    def bounds(self):
        """(min, max) of the drawn geometry, or None when nothing is drawn."""
        low = [math.inf] * 3
        high = [-math.inf] * 3
        for item in self.drawn_items():
            for p in item.points:
                for k in range(3):
                    low[k] = min(low[k], p[k])
                    high[k] = max(high[k], p[k])
        if low[0] == math.inf:
            return None
        return tuple(low), tuple(high)


def marked_auxiliary(extras):
    return isinstance(extras, dict) and extras.get("auxiliary") is True


def split_chunks(data):
    if len(data) < 12:
        raise GlbError("too short for a glTF binary")
    magic, version, length = struct.unpack_from("<III", data, 0)
    if magic != GLB_MAGIC:
        raise GlbError("not a glTF binary (wrong magic)")
    if version != 2:
        raise GlbError("glTF binary version %d is not 2" % version)
    if length > len(data):
        raise GlbError("the file is cut short")
    offset = 12
    doc = None
    binary = b""
    while offset + 8 <= length:
        size, kind = struct.unpack_from("<II", data, offset)
        offset += 8
        if offset + size > length:
            raise GlbError("a chunk runs past the end of the file")
        chunk = data[offset:offset + size]
        offset += size
        if kind == CHUNK_JSON and doc is None:
            try:
                doc = json.loads(chunk.decode("utf-8"))
            except (UnicodeDecodeError, ValueError) as error:
                raise GlbError("the JSON chunk is not valid JSON: %s" % error) from None
        elif kind == CHUNK_BIN and not binary:
            binary = bytes(chunk)
    if not isinstance(doc, dict):
        raise GlbError("no JSON chunk")
    return doc, binary


class Reader:
    def __init__(self, doc, binary):
        self.doc = doc
        self.binary = binary

    def array(self, key):
        value = self.doc.get(key, [])
        if not isinstance(value, list):
            raise GlbError('"%s" must be a list' % key)
        return value

    def get(self, key, index):
        items = self.array(key)
        if not isinstance(index, int) or not 0 <= index < len(items):
            raise GlbError("%s %r does not exist" % (key, index))
        return items[index]

    def accessor(self, index, want_type):
        acc = self.get("accessors", index)
        kind = acc.get("type")
        if kind not in want_type or acc.get("componentType") not in COMPONENT_FORMATS:
            raise GlbError("accessor %d has an unexpected type" % index)
        n = COMPONENTS[kind]
        fmt = COMPONENT_FORMATS[acc["componentType"]]
        count = acc.get("count", 0)
        if "bufferView" not in acc:
            return [(0,) * n] * count
        view = self.get("bufferViews", acc["bufferView"])
        if view.get("buffer", 0) != 0:
            raise GlbError("only the file's own binary chunk can hold data")
        element = struct.calcsize("<" + fmt * n)
        stride = view.get("byteStride") or element
        start = view.get("byteOffset", 0) + acc.get("byteOffset", 0)
        end = start + stride * (count - 1) + element if count else start
        if end > view.get("byteOffset", 0) + view.get("byteLength", 0) or end > len(self.binary):
            raise GlbError("accessor %d runs past its data" % index)
        if stride == element:
            flat = struct.unpack_from("<%d%s" % (count * n, fmt), self.binary, start)
            return [flat[i:i + n] for i in range(0, count * n, n)]
        return [struct.unpack_from("<" + fmt * n, self.binary, start + i * stride)
                for i in range(count)]

    def colour(self, index):
        if index is None:
            return (1.0, 1.0, 1.0, 1.0)
        material = self.get("materials", index)
        factor = material.get("pbrMetallicRoughness", {}).get("baseColorFactor",
                                                              [1.0, 1.0, 1.0, 1.0])
        return tuple(float(v) for v in factor)


def read_bytes(data, name="object file"):
    """GlbContent of a glTF binary; raises GlbError naming `name` when it cannot be read."""
    try:
        return _read(bytes(data))
    except GlbError as error:
        raise GlbError("%s: %s" % (name, error)) from None
    except (struct.error, TypeError, KeyError, AttributeError) as error:
        raise GlbError("%s: malformed glTF (%s)" % (name, error)) from None


def read_file(path):
    with open(path, "rb") as f:
        return read_bytes(f.read(), path)


def _read(data):
    doc, binary = split_chunks(data)
    reader = Reader(doc, binary)
    content = GlbContent()
    asset = doc.get("asset", {})
    extras = asset.get("extras", {}) if isinstance(asset, dict) else {}
    content.auxiliary = marked_auxiliary(extras)
    scenes = reader.array("scenes")
    scene_index = doc.get("scene", 0)
    if scenes:
        scene = reader.get("scenes", scene_index)
        content.scene_name = scene.get("name", "")
        scene_extras = scene.get("extras", {})
        content.scene_extras = scene_extras if isinstance(scene_extras, dict) else {}
        roots = scene.get("nodes", [])
    else:
        roots = []
    for root in roots:
        _visit(reader, root, Y_UP_TO_Z_UP, False, content, 0)
    return content


def _visit(reader, index, parent, auxiliary, content, depth):
    if depth > 64:
        raise GlbError("the node tree is too deep (a cycle?)")
    node = reader.get("nodes", index)
    matrix = multiply(parent, node_matrix(node))
    aux = auxiliary or marked_auxiliary(node.get("extras", {}))
    if "mesh" in node:
        mesh = reader.get("meshes", node["mesh"])
        for primitive in mesh.get("primitives", []):
            if primitive.get("mode", TRIANGLES) != TRIANGLES:
                continue
            positions = reader.accessor(primitive["attributes"]["POSITION"], ("VEC3",))
            points = [transform_point(matrix, p) for p in positions]
            if "indices" in primitive:
                flat = [i[0] for i in reader.accessor(primitive["indices"], ("SCALAR",))]
            else:
                flat = list(range(len(points)))
            if any(i >= len(points) for i in flat):
                raise GlbError("an index points past the mesh's points")
            triangles = [tuple(flat[i:i + 3]) for i in range(0, len(flat) - 2, 3)]
            content.items.append(Item(node.get("name", ""), points, triangles,
                                      reader.colour(primitive.get("material")), aux))
    for child in node.get("children", []):
        _visit(reader, child, matrix, aux, content, depth + 1)
