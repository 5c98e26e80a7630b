"""A click with the mouse in FreeCAD's 3D view while the macro awaits one (needs FreeCAD's GUI)."""

import os
import unittest

import FreeCAD
import FreeCADGui
from PySide2 import QtCore, QtGui, QtWidgets

from pluvarine_freecad import gui, house

SAMPLE = os.path.join(os.environ.get("PLUVARINE_SOURCE", ""), "data", "sample", "house.json")
# Looking down on the house from above its middle, 20 m of plan over the view's height.
TOP = ("#Inventor V2.1 ascii\nOrthographicCamera { position 5000 4000 100000 orientation 0 0 1 0"
       " aspectRatio 1 focalDistance 100000 height 20000 }")


def settle():
    for _ in range(20):
        QtWidgets.QApplication.processEvents()


class ViewClickTest(unittest.TestCase):
    def test_a_click_beside_a_wall_reaches_the_macro_on_the_wall_face(self):
        doc = FreeCAD.newDocument("Click")
        house.build(doc, house.load(SAMPLE))
        settle()
        view = FreeCADGui.ActiveDocument.ActiveView
        view.setCamera(TOP)
        settle()
        host = gui.installed.host
        sent = []
        host.channel.raise_event = lambda name, args: sent.append((name, args))
        host.op_RequestOneClick({"count": 1, "cursor": None})
        # Coin's pixels (origin bottom left) of the plan point (5, -0.1) m, from two probes.
        a, b = view.getPoint(0, 0), view.getPoint(100, 100)
        px = (5000 - a.x) * 100 / (b.x - a.x)
        py = (-100 - a.y) * 100 / (b.y - a.y)
        viewport = view.graphicsView().viewport()
        ratio = view.getSize()[1] / viewport.height()  # Coin's pixels per widget pixel
        at = QtCore.QPointF(px / ratio, (view.getSize()[1] - 1 - py) / ratio)
        for kind in (QtCore.QEvent.MouseButtonPress, QtCore.QEvent.MouseButtonRelease):
            QtWidgets.QApplication.sendEvent(viewport, QtGui.QMouseEvent(
                kind, at, QtCore.Qt.LeftButton, QtCore.Qt.LeftButton, QtCore.Qt.NoModifier))
        settle()
        self.assertEqual(len(sent), 1)
        name, args = sent[0]
        self.assertEqual((name, args["valid"], args["id"]), ("exe_GotOneClick", True, 1))
        self.assertAlmostEqual(args["x"], 5.0, delta=0.05)  # within a pixel or two
        self.assertEqual(args["y"], 0.0)                    # moved onto the wall face
        self.assertIsNone(host.click)
