"""The add-on's GLB reader: node transforms, the y-up turn, materials, helpers, bad files."""

import unittest

from glb_fixture import triangle_glb
from pluvarine_freecad import glb

TRIANGLE = [(0.0, 0.0, 0.0), (1.0, 0.0, 0.0), (0.0, 2.0, 0.0)]


def points(data):
    return [tuple(round(c, 6) for c in p) for item in glb.read_bytes(data).items
            for p in item.points]


class GlbReaderTest(unittest.TestCase):
    def test_node_transforms_and_the_turn_to_z_up(self):
        # (node, expected points): glTF y up becomes z up, (x, y, z) -> (x, -z, y).
        quarter_about_z = [0.0, 0.0, 0.7071067811865476, 0.7071067811865476]
        cases = [
            ({}, [(0, 0, 0), (1, 0, 0), (0, 0, 2)]),
            ({"translation": [1, 2, 3]}, [(1, -3, 2), (2, -3, 2), (1, -3, 4)]),
            ({"scale": [2, 1, 1]}, [(0, 0, 0), (2, 0, 0), (0, 0, 2)]),
            ({"rotation": quarter_about_z}, [(0, 0, 0), (0, 0, 1), (-2, 0, 0)]),
            ({"matrix": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1]},
             [(5, -7, 6), (6, -7, 6), (5, -7, 8)]),
        ]
        for node, expected in cases:
            with self.subTest(node=node):
                self.assertEqual(points(triangle_glb([node], TRIANGLE)),
                                 [tuple(float(c) for c in p) for p in expected])

    def test_colour_name_extras_and_helpers_left_out_of_the_box(self):
        helper = {"translation": [50, 0, 0], "extras": {"id": 1, "auxiliary": True}}
        content = glb.read_bytes(triangle_glb(
            [{"name": "pipe #2"}, helper], TRIANGLE, colour=(0.1, 0.2, 0.3, 1.0),
            scene_extras={"pluvarine.partsList.count": 0}))
        self.assertEqual(content.scene_name, "Fallrohr")
        self.assertEqual(content.scene_extras, {"pluvarine.partsList.count": 0})
        self.assertEqual([(i.name, i.auxiliary) for i in content.items],
                         [("pipe #2", False), ("", True)])
        self.assertEqual(content.items[0].colour, (0.1, 0.2, 0.3, 1.0))
        self.assertEqual(content.items[0].triangles, [(0, 1, 2)])
        self.assertEqual(content.bounds(), ((0.0, 0.0, 0.0), (1.0, 0.0, 2.0)))

    def test_damaged_files_are_refused_with_a_reason(self):
        good = triangle_glb([{}], TRIANGLE)
        cases = {
            "wrong magic": b"glTX" + good[4:],
            "too short": good[:8],
            "cut short": good[:-8],
            "an index points past": triangle_glb([{}], TRIANGLE, indices=(0, 1, 7)),
            "not valid JSON": good[:20] + b"x" + good[21:],
        }
        for reason, data in cases.items():
            with self.subTest(reason=reason):
                with self.assertRaises(glb.GlbError) as raised:
                    glb.read_bytes(data, "t.glb")
                self.assertIn("t.glb", str(raised.exception))
