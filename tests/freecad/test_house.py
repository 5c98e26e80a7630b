"""The sample house built in FreeCAD from its building file, and what the add-on reads from it:
the wall pick, the roof values, the level, the downpipe's placement and the project data."""

import math
import os
import tempfile
import unittest

import FreeCAD

from glb_fixture import triangle_glb
from pluvarine_freecad import downpipe, glb, house, roofs, store, walls

SAMPLE = os.path.join(os.environ.get("PLUVARINE_SOURCE", ""), "data", "sample", "house.json")


class SampleHouseTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.doc = FreeCAD.newDocument("SampleHouse")
        house.build(cls.doc, house.load(SAMPLE))

    @classmethod
    def tearDownClass(cls):
        FreeCAD.closeDocument(cls.doc.Name)

    def test_the_model_has_a_site_a_building_four_walls_and_the_hip_roof(self):
        kinds = sorted(o.IfcType for o in self.doc.Objects if hasattr(o, "IfcType"))
        self.assertEqual(kinds, ["Building", "Roof", "Site", "Wall", "Wall", "Wall", "Wall"])
        for obj in self.doc.Objects:
            self.assertFalse("Invalid" in obj.State, obj.Label)

    def test_the_four_sides_give_the_stand_in_hosts_values(self):
        # click (m) -> face point (m), face, pitch, direction, overhang (m); every face meets
        # the walls at 3 m, the roofing is 0.06 m, the gutter 0.15 m, the terrain at 0.
        sides = [((5, -0.1), (5, 0), 0, 30, 0, 0.0), ((10.1, 4), (10, 4), 1, 30, 90, 0.15),
                 ((5, 8.1), (5, 8), 2, 30, 180, 0.3), ((-0.1, 4), (0, 4), 3, 30, 270, 0.6),
                 ((10.2, 4), (10, 4), 1, 30, 90, 0.15), ((5, 0.1), (5, 0), 0, 30, 0, 0.0)]
        for click, face_point, face, pitch, direction, overhang in sides:
            with self.subTest(click=click):
                valid, at = walls.pick(self.doc, (click[0] * 1000, click[1] * 1000))
                self.assertTrue(valid)
                self.assertAlmostEqual(at[0], face_point[0] * 1000, places=6)
                self.assertAlmostEqual(at[1], face_point[1] * 1000, places=6)
                query = roofs.find_roof_at(self.doc, at)
                index, height = query.face_at(at)
                edge = query.face(index + 1)
                self.assertEqual(index, face)
                self.assertAlmostEqual(height, 3000.0, places=6)
                self.assertEqual((edge.angle, edge.direction()), (pitch, direction))
                self.assertAlmostEqual(edge.overhang, overhang * 1000, places=6)
                self.assertEqual((query.roofing_thickness_mm(), query.gutter_width_mm()),
                                 (60.0, 150.0))
                self.assertEqual(roofs.level_at(self.doc, at), 0.0)

    def test_clicks_away_from_the_outside_of_a_wall_are_invalid(self):
        for click in [(5, 0.2), (5, -0.3), (-0.1, -0.1), (20, 20), (5, 4)]:
            with self.subTest(click=click):
                valid, at = walls.pick(self.doc, (click[0] * 1000, click[1] * 1000))
                self.assertFalse(valid)
                self.assertEqual(at, (click[0] * 1000, click[1] * 1000))

    def test_no_roof_beyond_the_overhang(self):
        self.assertIsNone(roofs.find_roof_at(self.doc, (-650, 4000)))
        self.assertIsNotNone(roofs.find_roof_at(self.doc, (-550, 4000)))


class DownpipeAndDataTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.doc = FreeCAD.newDocument("Project")

    def tearDown(self):
        for name in list(FreeCAD.listDocuments()):
            FreeCAD.closeDocument(name)

    def test_the_box_centre_lands_at_the_matrix_turned_half_round(self):
        # A y-up triangle with its box from (0, 0, 0) to (1, 0, 2) once z is up: centre
        # (0.5, 0, 1). Direction 90: a = -360 deg, the identity turn, at (10.3, 4, 1.7).
        data = triangle_glb([{}], [(0, 0, 0), (1, 0, 0), (0, 2, 0)])
        obj = downpipe.create(self.doc, glb.read_bytes(data), "/x/obj/ 7.tob", "Downpipe 7")
        matrix = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10.3, 4, 1.7, 1]
        downpipe.set_matrix(obj, matrix)
        self.assertEqual(obj.Label, "Downpipe 7")
        self.assertEqual(list(obj.ElementMatrix), matrix)
        self.assertEqual(obj.IfcType, "Pipe Segment")
        self.assertEqual(obj.Placement.Base, FreeCAD.Vector(10300, 4000, 1700))
        self.assertAlmostEqual(obj.Placement.Rotation.Angle, 0.0, places=12)
        low, high = downpipe.world_box(obj)
        for got, want in zip(low + high, [9.8, 4.0, 0.7, 10.8, 4.0, 2.7]):
            self.assertAlmostEqual(got, want, places=9)
        self.assertEqual(downpipe.label_for("/w/obj/ 12.tob"), "Downpipe 12")

    def test_the_project_data_come_back_byte_for_byte_from_the_saved_document(self):
        block = os.path.join(self.folder, "pluvarine.dat")
        payload = bytes(range(256)) * 3
        with open(block, "wb") as f:
            f.write(payload)
        back = os.path.join(self.folder, "back.dat")
        self.assertFalse(store.load_macro_data(self.doc, 548199592, back))
        self.assertTrue(store.save_macro_data(self.doc, 548199592, block))
        path = os.path.join(self.folder, "p.FCStd")
        self.doc.saveAs(path)
        FreeCAD.closeDocument(self.doc.Name)
        reopened = FreeCAD.openDocument(path)
        self.assertTrue(store.load_macro_data(reopened, 548199592, back))
        self.assertFalse(store.load_macro_data(reopened, 1, back))
        with open(back, "rb") as f:
            self.assertEqual(f.read(), payload)


class PartsListTest(unittest.TestCase):
    def tearDown(self):
        FreeCAD.closeDocument(self.doc.Name)

    def test_the_sheet_lists_every_downpipes_rows_in_order_and_adds_new_ones_below(self):
        from pluvarine_freecad import partslist

        self.doc = FreeCAD.newDocument("Parts")
        extras = {"pluvarine.partsList.count": 2,
                  "pluvarine.partsList.1.article": "pipe", "pluvarine.partsList.1.count": 1,
                  "pluvarine.partsList.1.file": "Rohr_100_500.v3o",
                  "pluvarine.partsList.1.cutLength": 2813,
                  "pluvarine.partsList.2.article": "clamp", "pluvarine.partsList.2.count": 3}
        pipes = []
        for n, data in enumerate([extras, {}], start=1):
            content = glb.read_bytes(triangle_glb([{}], [(0, 0, 0), (1, 0, 0), (0, 1, 0)],
                                                  scene_extras=data))
            pipes.append(downpipe.create(self.doc, content, "/o/ %d.tob" % n, "Downpipe %d" % n))
            partslist.keep(pipes[-1], content.scene_extras)
        pipes.append(downpipe.create(self.doc, content, "/o/ 3.tob", "Downpipe 3"))
        partslist.keep(pipes[-1], extras)
        cells = ("A2", "B2", "C2", "H2", "I2", "A3", "H3", "A4", "B5")
        listing = ["Downpipe 1", "pipe", "Rohr_100_500.v3o", 1, 2813, "Downpipe 1", 3,
                   "Downpipe 3", "clamp"]
        # Written whole for two downpipes, then the third's rows added below theirs.
        partslist.update(self.doc, pipes[:2])
        sheet = partslist.update(self.doc, pipes)
        self.assertEqual([sheet.get(c) for c in cells], listing)
        self.assertRaises(ValueError, sheet.get, "A6")
        # Without the first one, the sheet is written anew.
        sheet = partslist.update(self.doc, pipes[1:])
        self.assertEqual([sheet.get(c) for c in ("A2", "A3")], ["Downpipe 3", "Downpipe 3"])
        self.assertRaises(ValueError, sheet.get, "A4")


class LevelTest(unittest.TestCase):
    def tearDown(self):
        FreeCAD.closeDocument(self.doc.Name)

    def test_the_terrain_under_the_point_else_the_buildings_base_level(self):
        import Arch
        import Mesh

        self.doc = FreeCAD.newDocument("Levels")
        building = Arch.makeBuilding([])
        building.Placement.Base = FreeCAD.Vector(0, 0, 500)
        self.assertEqual(roofs.level_at(self.doc, (1000, 1000)), 500)
        # A terrain rising 1 in 10 along x from -350 mm at x = 0.
        V = FreeCAD.Vector
        slope = self.doc.addObject("Mesh::Feature", "Terrain")
        slope.Mesh = Mesh.Mesh(([V(0, 0, -350), V(20000, 0, 1650), V(20000, 20000, 1650),
                                 V(0, 20000, -350)], [(0, 1, 2), (0, 2, 3)]))
        Arch.makeSite([building]).Terrain = slope
        for x, level in [(0, -350), (3500, 0), (10000, 650)]:
            self.assertAlmostEqual(roofs.level_at(self.doc, (x, 4000)), level, delta=0.01)
        self.assertEqual(roofs.level_at(self.doc, (-1000, 4000)), 500)  # off the terrain
