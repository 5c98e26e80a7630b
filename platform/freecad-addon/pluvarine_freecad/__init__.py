"""Pluvarine's add-on for FreeCAD: serves the host link inside FreeCAD's Arch workbench."""
