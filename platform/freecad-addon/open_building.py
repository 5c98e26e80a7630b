# Opens a building file of the stand-in host as an Arch model in FreeCAD.
#   freecad open_building.py            (GUI: a new document with the model, seen from above)
#   freecadcmd open_building.py         (console: PLUVARINE_SAVE_AS names the .FCStd to write)
# PLUVARINE_BUILDING names the building file; default: the sample house (installed beside this
# script, or in the source tree).
# PLUVARINE_READY_FILE, when set, is written once the model stands (for scripts that wait).
import os
import sys

import FreeCAD

here = os.path.dirname(os.path.abspath(__file__ if "__file__" in dir() else sys.argv[-1]))
if here not in sys.path:
    sys.path.insert(0, here)

from pluvarine_freecad import house  # noqa: E402


def open_building():
    installed = os.path.join(here, "house.json")
    path = os.environ.get("PLUVARINE_BUILDING") or (
        installed if os.path.isfile(installed)
        else os.path.join(here, "..", "..", "data", "sample", "house.json"))
    name = os.path.splitext(os.path.basename(path))[0]
    doc = FreeCAD.newDocument(name)
    house.build(doc, house.load(path))
    target = os.environ.get("PLUVARINE_SAVE_AS")
    if target:
        doc.saveAs(os.path.abspath(target))
    if FreeCAD.GuiUp:
        import FreeCADGui

        FreeCADGui.ActiveDocument.ActiveView.viewIsometric()
        FreeCADGui.SendMsgToActiveView("ViewFit")
    ready = os.environ.get("PLUVARINE_READY_FILE")
    if ready:
        with open(ready, "w") as f:
            f.write(doc.Name + "\n")
    return doc


try:
    open_building()
except Exception as error:  # a bad building file is reported, FreeCAD goes on
    FreeCAD.Console.PrintError("Pluvarine: %s\n" % error)
