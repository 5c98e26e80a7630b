"""Small glTF binaries for the add-on's tests, written by hand as glTF 2.0 has them."""

import json
import struct


def triangle_glb(nodes, positions, colour=(0.8, 0.5, 0.2, 1.0), scene_extras=None,
                 indices=(0, 1, 2), scene_name="Fallrohr"):
    """One mesh (float positions, 16-bit indices) used by every node in `nodes`."""
    bin_positions = struct.pack("<%df" % (3 * len(positions)), *[c for p in positions for c in p])
    bin_indices = struct.pack("<%dH" % len(indices), *indices)
    bin_indices += b"\0" * (-len(bin_indices) % 4)
    binary = bin_positions + bin_indices
    doc = {
        "asset": {"version": "2.0"},
        "scene": 0,
        "scenes": [{"name": scene_name, "nodes": list(range(len(nodes))),
                    "extras": scene_extras or {}}],
        "nodes": [dict(n, mesh=0) for n in nodes],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1,
                                    "material": 0}]}],
        "materials": [{"pbrMetallicRoughness": {"baseColorFactor": list(colour)}}],
        "buffers": [{"byteLength": len(binary)}],
        "bufferViews": [
            {"buffer": 0, "byteOffset": 0, "byteLength": len(bin_positions)},
            {"buffer": 0, "byteOffset": len(bin_positions), "byteLength": 2 * len(indices)}],
        "accessors": [
            {"bufferView": 0, "componentType": 5126, "count": len(positions), "type": "VEC3"},
            {"bufferView": 1, "componentType": 5123, "count": len(indices), "type": "SCALAR"}],
    }
    text = json.dumps(doc).encode("utf-8")
    text += b" " * (-len(text) % 4)
    total = 12 + 8 + len(text) + 8 + len(binary)
    return (struct.pack("<III", 0x46546C67, 2, total) + struct.pack("<II", len(text), 0x4E4F534A)
            + text + struct.pack("<II", len(binary), 0x004E4942) + binary)
