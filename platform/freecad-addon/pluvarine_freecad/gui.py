"""The add-on's face in FreeCAD's window: the toolbar button, clicks in the 3D view with the
macro's cursor, the prompt and progress in the status bar, and the document signals."""

import os

import FreeCAD
import FreeCADGui
from PySide2 import QtCore, QtGui, QtWidgets

from pluvarine_freecad import host as host_module
from pluvarine_freecad import roofs

COMMAND = "Pluvarine_Downpipe"
TOOLBAR = "User parameter:BaseApp/Workbench/Global/Toolbar/Pluvarine"
ADDON_DIR = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
# The macro's button picture: installed beside the add-on, or in the source tree.
ICON = next((p for p in (os.path.join(ADDON_DIR, "Resources", "bild.svg"),
                         os.path.join(ADDON_DIR, "..", "..", "ui", "assets", "bild.svg"))
             if os.path.isfile(p)), "")


# The Ui that InitGui installed in this FreeCAD session.
installed = None


def main_window():
    return FreeCADGui.getMainWindow()


class ButtonCommand:
    """The macro's toolbar button, shown in every workbench."""

    def __init__(self, ui):
        self.ui = ui

    def GetResources(self):
        return {"Pixmap": ICON, "MenuText": "Pluvarine", "ToolTip": "Downpipe macro"}

    def IsActive(self):
        return self.ui.host is not None and self.ui.host.button_enabled()

    def Activated(self):
        if self.ui.host is not None:
            self.ui.host.press_button()


class DocumentObserver:
    """FreeCAD's document signals as the macro's project events."""

    def __init__(self, ui):
        self.ui = ui
        self.created = set()

    def slotStartSaveDocument(self, doc, file_name):
        if self.ui.host is not None:
            self.ui.host.document_saving(doc, file_name)

    def slotRecomputedObject(self, obj):
        # Roofs the user makes get the gutter width once they have become roofs.
        if roofs.is_roof(obj) and roofs.GUTTER_WIDTH_PROPERTY not in obj.PropertiesList:
            QtCore.QTimer.singleShot(0, lambda: roofs.add_gutter_width(obj))

    def slotCreatedDocument(self, doc):
        # An opened document is restored after this signal: look at it once FreeCAD is back.
        # The host counts as busy until then.
        name = doc.Name
        self.created.add(name)
        if self.ui.host is not None:
            self.ui.host.working += 1
        QtCore.QTimer.singleShot(0, lambda: self._created(name))

    def _created(self, name):
        self.created.discard(name)
        if self.ui.host is None:
            return
        try:
            doc = FreeCAD.listDocuments().get(name)
            if doc is None:
                return
            for obj in doc.Objects:
                if roofs.is_roof(obj):
                    roofs.add_gutter_width(obj)
            if doc.FileName:
                self.ui.host.document_restored(doc)
            else:
                self.ui.host.document_created(doc)
        finally:
            self.ui.host.working -= 1

    def slotActivateDocument(self, doc):
        if doc.Name not in self.created and self.ui.host is not None:
            self.ui.host.document_activated(doc)

    def slotDeletedDocument(self, doc):
        if self.ui.host is not None:
            self.ui.host.document_closed(doc)


class Ui:
    def __init__(self):
        self.host = None
        self.callback = None
        self.view = None
        self.cursor_set = False
        self.progress = None
        self.icon = None

    def install(self):
        global installed
        installed = self
        FreeCADGui.addCommand(COMMAND, ButtonCommand(self))
        toolbar = FreeCAD.ParamGet(TOOLBAR)
        toolbar.SetString("Name", "Pluvarine")
        toolbar.SetBool("Active", True)
        toolbar.SetString(COMMAND, "FreeCAD")
        self.observer = DocumentObserver(self)
        FreeCAD.addDocumentObserver(self.observer)
        self.host = host_module.Host(self)
        try:
            self.host.start()
        except OSError as error:
            FreeCAD.Console.PrintError("Pluvarine: %s\n" % error)
        QtWidgets.QApplication.instance().aboutToQuit.connect(self.host.stop)
        main_window().workbenchActivated.connect(lambda name: self.set_button(None, None, None,
                                                                              None))

    # ---- button ----

    def actions(self):
        return [a for a in main_window().findChildren(QtWidgets.QAction)
                if a.objectName() == COMMAND]

    def set_button(self, pixmap, tooltip, shown, enabled):
        if pixmap is not None:
            self.icon = QtGui.QIcon(pixmap)
        button = self.host.button if self.host else None
        for action in self.actions():
            if self.icon is not None:
                action.setIcon(self.icon)
            if button is not None:
                action.setToolTip(button["tooltip"])
                action.setVisible(button["shown"])
                action.setEnabled(button["shown"] and button["enabled"])

    def macro_gone(self):
        for action in self.actions():
            action.setVisible(True)
            action.setEnabled(True)

    # ---- clicks ----

    def await_click(self, cursor):
        self.end_click()
        gui_doc = FreeCADGui.ActiveDocument
        if gui_doc is None:
            return
        self.view = gui_doc.ActiveView
        if not hasattr(self.view, "addEventCallback"):
            self.view = None
            return
        self.callback = self.view.addEventCallback("SoMouseButtonEvent", self._mouse)
        if cursor is not None:
            QtWidgets.QApplication.setOverrideCursor(QtGui.QCursor(cursor, 15, 15))
            self.cursor_set = True

    def end_click(self):
        if self.callback is not None and self.view is not None:
            try:
                self.view.removeEventCallback("SoMouseButtonEvent", self.callback)
            except Exception:  # the view may have been closed with its document
                pass
        self.callback = None
        self.view = None
        if self.cursor_set:
            QtWidgets.QApplication.restoreOverrideCursor()
            self.cursor_set = False
        self.show_prompt("")

    def _mouse(self, info):
        if info.get("State") != "DOWN" or info.get("Button") != "BUTTON1":
            return
        point = self.plan_point(self.view, info["Position"])
        if point is not None and self.host is not None:
            # Leave Coin's event handling before the callback is removed.
            QtCore.QTimer.singleShot(0, lambda: self.host.take_click(point))

    @staticmethod
    def plan_point(view, position):
        """Plan point (mm) under the mouse: on the object hit, else on the ground plane."""
        hit = view.getObjectInfo(tuple(position))
        if hit:
            return (hit["x"], hit["y"])
        doc = FreeCAD.ActiveDocument
        ground = roofs.level_at(doc, (0.0, 0.0)) if doc else 0.0
        p = view.getPoint(tuple(position))
        d = view.getViewDirection()
        if abs(d.z) < 1e-9:
            return (p.x, p.y)
        t = (ground - p.z) / d.z
        return (p.x + t * d.x, p.y + t * d.y)

    # ---- status bar ----

    def show_prompt(self, text):
        bar = main_window().statusBar()
        if text:
            bar.showMessage(text)
        else:
            bar.clearMessage()

    def show_progress(self, text, percentage):
        bar = main_window().statusBar()
        if self.progress is None:
            self.progress = QtWidgets.QProgressBar()
            self.progress.setMaximumWidth(200)
            bar.addPermanentWidget(self.progress)
        self.progress.setValue(percentage)
        self.progress.show()
        bar.showMessage(text)

    def end_progress(self):
        if self.progress is not None:
            self.progress.hide()
        main_window().statusBar().clearMessage()

    # ---- scripted sessions ----

    def screenshot(self, path):
        gui_doc = FreeCADGui.ActiveDocument
        if gui_doc is None:
            raise ValueError("no document is open")
        view = gui_doc.ActiveView
        view.viewIsometric()
        view.fitAll()
        QtWidgets.QApplication.processEvents()
        view.saveImage(path, 1200, 900, "White")
        if not os.path.isfile(path):
            raise ValueError("cannot write " + path)

    def quit(self):
        for name in list(FreeCAD.listDocuments()):
            FreeCAD.closeDocument(name)
        main_window().close()
        QtWidgets.QApplication.instance().quit()
