"""FreeCAD as the macro's host: the operations, the events and the scripted-session controls.

One Host lives in FreeCAD's GUI for the whole session. It listens for the macro, starts the
Pluvarine program when the toolbar button is pressed and no macro is connected, answers the
host operations from the active document and raises the project events from FreeCAD's
document signals.
"""

import base64
import os
import re
import shutil
import zipfile

import FreeCAD
from PySide2 import QtCore, QtGui

from pluvarine_freecad import downpipe, glb, partslist, protocol, roofs, store, walls

PROTOCOL = 1
# The number after "+" is whole: the macro reads it with the locale's decimal separator.
VERSION_TEXT = "FreeCAD %s Tectaro-compatible host +2026"
GUID_FORM = re.compile(r"\{[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-"
                       r"[0-9A-Fa-f]{12}\}$")
BUTTON_ID = 1
# How long the host lets a handler of the macro run before it goes on without its answer.
ACK_TIMEOUT_MS = 30000
# The pressed button of a program started for it is passed on once the program is up.
PRESS_DELAY_MS = 1500


def picture(value):
    """QPixmap of a picture value {"png": base64}, or None."""
    if not isinstance(value, dict) or "png" not in value:
        return None
    pixmap = QtGui.QPixmap()
    pixmap.loadFromData(QtCore.QByteArray(base64.b64decode(value["png"])), "PNG")
    return None if pixmap.isNull() else pixmap


def metres(mm):
    return float(mm) / 1000.0


class PendingElement:
    """An element made from a loaded object file. It joins the document, placed, when it is
    committed: FreeCAD redraws its whole 3D view after every change to it, and a document of
    hundreds of downpipes then pays one redraw per insertion instead of one per request."""

    def __init__(self, doc, path, content):
        self.doc, self.path, self.content = doc, path, content
        self.matrix = None
        self.obj = None


def find_building(doc):
    for obj in doc.Objects:
        if getattr(obj, "IfcType", None) == "Building":
            return obj
    return None


def program_path():
    """The Pluvarine program: $PLUVARINE_PROGRAM, the installer's note, the program of the
    installation the add-on came with (PREFIX/share/pluvarine/freecad-addon), or the PATH."""
    explicit = os.environ.get("PLUVARINE_PROGRAM")
    if explicit:
        return explicit
    addon = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
    note = os.path.join(addon, "program-path.txt")
    if os.path.isfile(note):
        with open(note, encoding="utf-8") as f:
            path = f.read().strip()
        if path:
            return path
    installed = os.path.join(addon, "..", "..", "..", "bin", "pluvarine")
    if os.access(installed, os.X_OK):
        return os.path.normpath(installed)
    return shutil.which("pluvarine") or "pluvarine"


class ClickRequest:
    def __init__(self, request_id, count):
        self.id = request_id
        self.remaining = max(1, count)


class Host(QtCore.QObject):
    def __init__(self, ui, socket_path=None):
        super().__init__()
        self.ui = ui  # the GUI side: button, cursor, prompt, progress, view clicks
        self.channel = protocol.Channel(socket_path or protocol.default_socket_path(),
                                        self.request)
        self.channel.disconnected.connect(self._macro_gone)
        self.handles = {}
        self.next_handle = 1
        self.macro_connected = False
        self.button = None  # {"id", "shown", "enabled", "tooltip"}
        self.click = None
        self.next_click = 1
        self.prompt = ""
        self.last_chunks = 0
        self.working = 0  # saves and loads under way
        self.press_waiting = False
        self.current = None  # the document the macro's project events are about
        self.saving = None

    # ---- start and end ----

    def start(self):
        self.channel.listen()

    def stop(self):
        if self.macro_connected:
            self.channel.raise_event("exe_ProgramExit", {})
            self.macro_connected = False
        self.channel.close()

    def _macro_gone(self):
        self.macro_connected = False
        self.handles = {}
        self.button = None
        self.cancel_click()
        self.ui.macro_gone()

    # ---- the toolbar button ----

    def press_button(self):
        """The Pluvarine button in FreeCAD's toolbar."""
        if self.macro_connected and self.button is not None:
            self.channel.raise_event("exe_ButtonChange", {
                "btnId": self.button["id"], "evnt": 2, "selectedIndex": 0, "pressed": True,
                "visible": self.button["shown"], "enabled": self.button["enabled"]})
            return True
        if not self.channel.is_connected():
            self.press_waiting = True
            self.start_program()
        return False

    def start_program(self):
        program = program_path()
        ok = QtCore.QProcess.startDetached(program, ["--host-socket", self.channel.path])
        if not ok:
            FreeCAD.Console.PrintError("Pluvarine: cannot start %s\n" % program)
            self.press_waiting = False

    def button_enabled(self):
        return self.button is None or (self.button["shown"] and self.button["enabled"])

    # ---- requests ----

    def request(self, op, target, args):
        if target is not None:
            kind, thing = self._handle(target)
            method = getattr(self, "op_%s_%s" % (kind, op), None)
            if method is None:
                raise ValueError("a %s has no operation %s" % (kind, op))
            return method(thing, args)
        method = getattr(self, "op_" + op.replace(".", "_"), None)
        if method is None:
            raise ValueError("unknown operation " + str(op))
        return method(args)

    def _new_handle(self, kind, thing):
        handle = self.next_handle
        self.next_handle += 1
        self.handles[handle] = (kind, thing)
        return handle

    def _handle(self, handle):
        if handle not in self.handles:
            raise ValueError("unknown handle %r" % (handle,))
        return self.handles[handle]

    def _doc(self):
        doc = FreeCAD.ActiveDocument
        if doc is None:
            raise ValueError("no document is open")
        return doc

    @staticmethod
    def _point(args):
        return (float(args["x"]) * 1000.0, float(args["y"]) * 1000.0)

    # connection
    def op_hello(self, args):
        if args.get("protocol") != PROTOCOL:
            raise ValueError("this host speaks protocol %d" % PROTOCOL)
        store.seed(store.program_folder(), args.get("workFolderTree") or "",
                   args.get("helpFolder") or "")
        return {"protocol": PROTOCOL, "host": "FreeCAD %s (Pluvarine add-on 1)" % self._version()}

    @staticmethod
    def _version():
        return ".".join(FreeCAD.Version()[:3])

    def op_GetProgramFolder(self, args):
        folder = store.program_folder()
        os.makedirs(folder, exist_ok=True)
        return folder

    def op_GetActiveBuilding(self, args):
        # A document without an Arch building still has its roofs and walls: it stands in.
        doc = self._doc()
        return self._new_handle("building", (doc, find_building(doc)))

    def op_GetVersionText(self, args):
        return VERSION_TEXT % self._version()

    def op_AddMacroButton(self, args):
        self.button = {"id": BUTTON_ID, "shown": True, "enabled": True,
                       "tooltip": str(args.get("tooltip", ""))}
        self.ui.set_button(picture(args.get("picture")), self.button["tooltip"], True, True)
        if self.press_waiting:
            self.press_waiting = False
            QtCore.QTimer.singleShot(PRESS_DELAY_MS, self.press_button)
        return BUTTON_ID

    def op_RequestOneClick(self, args):
        self.click = ClickRequest(self.next_click, int(args.get("count", 1)))
        self.next_click += 1
        self.ui.await_click(picture(args.get("cursor")))
        return None

    def op_GetLevelAt(self, args):
        return metres(roofs.level_at(self._doc(), self._point(args)))

    def op_LoadObjectFile(self, args):
        path = str(args["path"])
        if not os.path.isfile(path):
            raise ValueError("cannot open the object file " + path)
        try:
            content = glb.read_file(path)
        except glb.GlbError as error:
            raise ValueError(str(error)) from None
        return self._new_handle("template", (path, content))

    def _project_doc(self):
        """The document being saved, else the macro's current one, else the active one."""
        if self.saving is not None:
            return self.saving
        return FreeCAD.listDocuments().get(self.current) or FreeCAD.ActiveDocument

    def op_LoadMacroData(self, args):
        return store.load_macro_data(self._project_doc(), int(args["dataId"]),
                                     str(args["path"]))

    def op_SetMacroButtonState(self, args):
        if self.button is None or args.get("buttonId") != self.button["id"]:
            return 0
        self.button["shown"] = bool(args.get("shown"))
        self.button["enabled"] = bool(args.get("enabled"))
        self.ui.set_button(None, None, self.button["shown"], self.button["enabled"])
        return 1

    def op_ShowPrompt(self, args):
        self.prompt = str(args.get("text", ""))
        self.ui.show_prompt(self.prompt)
        return None

    def op_ShowProgress(self, args):
        self.ui.show_progress(str(args.get("text", "")),
                              max(0, min(100, int(args.get("percentage", 0)))))
        return None

    def op_EndProgress(self, args):
        self.ui.end_progress()
        return None

    def op_SaveMacroData(self, args):
        return store.save_macro_data(self._project_doc(), int(args["dataId"]),
                                     str(args["path"]))

    def op_ConnectMacro(self, args):
        if not GUID_FORM.match(str(args.get("macroGuid", ""))):
            return False
        self.macro_connected = True
        return True

    # building, roof list, roof, roof data
    def op_building_GetRoofList(self, building, args):
        return self._new_handle("roofList", building[0])

    def op_roofList_FindRoofAt(self, doc, args):
        query = roofs.find_roof_at(doc, self._point(args))
        return {"roof": None if query is None else self._new_handle("roof", query),
                "ignored": 0 if query is None else 1, "six": args.get("six", [1.0] * 6),
                "ignoredFlag": query is not None}

    def op_roof_GetRoofData(self, query, args):
        return self._new_handle("roofData", query)

    def op_roof_FindRoofFaceAt(self, query, args):
        found = query.face_at(self._point(args))
        if found is None:
            raise ValueError("no roof face at this point")
        return {"face": found[0], "height": metres(found[1]), "six": args.get("six", [1.0] * 6),
                "ignored": True}

    def op_roofData_GetRoofingThickness(self, query, args):
        return metres(query.roofing_thickness_mm())

    def op_roofData_GetGutterWidth(self, query, args):
        return metres(query.gutter_width_mm())

    def op_roofData_GetFaceOverhang(self, query, args):
        return {"value": metres(query.face(int(args["face"])).overhang), "ignored": True}

    def op_roofData_GetFacePitch(self, query, args):
        return query.face(int(args["face"])).angle

    def op_roofData_GetFaceDirection(self, query, args):
        return query.face(int(args["face"])).direction()

    # object template and element
    def op_template_CreateElement(self, template, args):
        path, content = template
        return self._new_handle("element", PendingElement(self._doc(), path, content))

    def op_element_PrepareElement(self, element, args):
        return None

    def op_element_SetElementMatrix(self, element, args):
        matrix = args["matrix"]
        if not isinstance(matrix, list) or len(matrix) != 16:
            raise ValueError("a matrix needs 16 numbers")
        element.matrix = matrix
        if element.obj is not None:
            downpipe.set_matrix(element.obj, matrix)
        return 0

    def op_element_CommitElement(self, element, args):
        doc = element.doc
        if element.obj is None:
            element.obj = downpipe.create(doc, element.content, element.path,
                                          downpipe.label_for(element.path))
            partslist.keep(element.obj, element.content.scene_extras)
            if element.matrix is not None:
                downpipe.set_matrix(element.obj, element.matrix)
        building = find_building(doc)
        if building is not None and element.obj not in building.Group:
            building.addObject(element.obj)
        partslist.update(doc, [o for o in doc.Objects if downpipe.is_downpipe(o)])
        doc.recompute()
        return 0

    # ---- clicks ----

    def take_click(self, plan_point_mm):
        """A click in the view at a plan point; False when no click is awaited."""
        if self.click is None:
            return False
        request = self.click
        request.remaining -= 1
        if request.remaining <= 0:
            self.cancel_click()
        doc = FreeCAD.ActiveDocument
        valid, point = walls.pick(doc, plan_point_mm) if doc else (False, plan_point_mm)
        self.channel.raise_event("exe_GotOneClick", {
            "valid": valid, "x": metres(point[0]), "y": metres(point[1]), "id": request.id})
        return True

    def cancel_click(self):
        self.click = None
        self.prompt = ""
        self.ui.end_click()

    # ---- project events ----

    def _event(self, name, args):
        if self.macro_connected:
            self.channel.raise_event(name, args)

    def document_saving(self, doc, file_name):
        if not self.macro_connected:
            return
        self.working += 1
        self.saving = doc
        try:
            self.channel.raise_event("exe_SaveStart", {
                "fileName": file_name, "numBuildings": 1, "isAutoSave": False,
                "numChunksToSave": 0})
            self.channel.wait_for_acks(ACK_TIMEOUT_MS)
            ack = self.channel.last_ack or {}
            self.last_chunks = int((ack.get("result") or {}).get("numChunksToSave", 0))
            building = find_building(doc)
            handle = self._new_handle("building", (doc, building)) if building else None
            self.channel.raise_event("exe_SaveBuilding", {"buildingNo": 0, "building": handle})
            self.channel.wait_for_acks(ACK_TIMEOUT_MS)
        finally:
            self.saving = None
            self.working -= 1

    def document_restored(self, doc):
        self.current = doc.Name
        if not self.macro_connected:
            return
        building = find_building(doc)
        handle = self._new_handle("building", (doc, building)) if building else None
        self._event("exe_LoadBuilding", {"building": handle, "saveNo": 0})
        self._event("exe_LoadBuilding", {"building": None, "saveNo": 0})
        self._event("exe_LoadComplete", {"successfull": True})

    def document_created(self, doc):
        self.current = doc.Name
        self._event("exe_NewCurrentProject", {})

    def document_activated(self, doc):
        if doc.Name != self.current:
            self.document_created(doc)

    def document_closed(self, doc):
        # Only the macro's own project: closing another document must not empty its obj folder.
        if self.current is not None and doc.Name != self.current:
            return
        self.current = None
        self._event("exe_ProjectClosed", {})

    # ---- scripted sessions ----

    def op_control_click(self, args):
        if self.click is None:
            raise ValueError("no click is awaited")
        point = self._point(args)
        self._later(lambda: self.take_click(point))
        return None

    def op_control_macroButton(self, args):
        if self.button is None or not self.button["shown"] or not self.button["enabled"]:
            raise ValueError("the macro's button is missing, hidden or disabled")
        self._later(self.press_button)
        return None

    def _later(self, action):
        """Runs the action after the reply has gone; the host is busy until then."""
        self.working += 1

        def run():
            try:
                action()
            finally:
                self.working -= 1
        QtCore.QTimer.singleShot(0, run)

    def _close_active(self):
        doc = FreeCAD.ActiveDocument
        if doc is not None:
            FreeCAD.closeDocument(doc.Name)

    def op_control_newProject(self, args):
        self._later(lambda: (self._close_active(), FreeCAD.newDocument("Unnamed")))
        return None

    def op_control_saveProject(self, args):
        doc = FreeCAD.ActiveDocument
        if doc is None:
            raise ValueError("no document is open")
        path = args.get("path") or doc.FileName
        if not path:
            raise ValueError("the document has no file yet")
        path = os.path.abspath(path)
        self._later(lambda: doc.saveAs(path))
        return None

    def op_control_closeProject(self, args):
        self._later(self._close_active)
        return None

    def op_control_openProject(self, args):
        path = os.path.abspath(str(args.get("path", "")))
        if not zipfile.is_zipfile(path):
            raise ValueError("cannot read the FreeCAD document " + path)
        self._later(lambda: (self._close_active(), FreeCAD.openDocument(path)))
        return None

    def op_control_screenshot(self, args):
        self.ui.screenshot(str(args["path"]))
        return None

    def op_control_state(self, args):
        doc = FreeCAD.ActiveDocument
        elements = []
        if doc is not None:
            for obj in doc.Objects:
                if downpipe.is_downpipe(obj):
                    low, high = downpipe.world_box(obj)
                    m = list(obj.ElementMatrix)
                    elements.append({"name": os.path.basename(obj.SourceFile),
                                     "label": obj.Label,
                                     "source": obj.SourceFile, "matrix": m,
                                     "plan": m[12:14] if len(m) == 16 else None,
                                     "worldMin": low, "worldMax": high})
        return {"project": None if doc is None else doc.FileName,
                "button": dict(self.button) if self.button else None,
                "prompt": self.prompt, "clickRequested": self.click is not None,
                "lastChunkCount": self.last_chunks, "elements": elements}

    def op_control_idle(self, args):
        return self.working == 0 and not self.channel.busy()

    def op_control_exit(self, args):
        def leave():
            self.stop()
            self.ui.quit()
        self._later(leave)
        return None
