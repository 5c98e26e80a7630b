# Pluvarine's add-on: the downpipe macro's button in every workbench and the host link.
import FreeCAD


def _start_pluvarine():
    from pluvarine_freecad import gui

    global _pluvarine_ui
    _pluvarine_ui = gui.Ui()
    _pluvarine_ui.install()


try:
    _start_pluvarine()
except Exception as error:  # the add-on must never stop FreeCAD from starting
    FreeCAD.Console.PrintError("Pluvarine add-on: %s\n" % error)
