# Pluvarine's add-on has nothing to set up without FreeCAD's GUI; see InitGui.py.
