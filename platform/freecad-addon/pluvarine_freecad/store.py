"""What the macro keeps on disk through FreeCAD: its program folder and its project data.

The program folder is per user (FreeCAD's own folder is read-only):
$XDG_DATA_HOME/pluvarine/freecad/ (~/.local/share/pluvarine/freecad/), laid out on first use
like the stand-in host's: the macro's working-folder tree below Standard/Macros/Pluvarine and
Standard/Makros/Pluvarine, the help pages in Tectaro.chm/.

The project data block is the file of an included-file property of one data object in the
document, so it travels inside the .FCStd.
"""

import os
import shutil


MACRO_FOLDERS = ("Standard/Macros/Pluvarine", "Standard/Makros/Pluvarine")
HELP_FOLDER = "Tectaro.chm"
DATA_OBJECT = "PluvarineData"


def program_folder():
    base = os.environ.get("XDG_DATA_HOME") or os.path.join(os.path.expanduser("~"), ".local",
                                                            "share")
    return os.path.join(base, "pluvarine", "freecad") + "/"


def _copy_newer(source, target, top_level):
    os.makedirs(target, exist_ok=True)
    for name in sorted(os.listdir(source)):
        src = os.path.join(source, name)
        dst = os.path.join(target, name)
        if os.path.isdir(src):
            if top_level and name in ("obj", "destination"):
                os.makedirs(dst, exist_ok=True)
            else:
                _copy_newer(src, dst, False)
        elif not os.path.exists(dst) or os.path.getmtime(dst) < os.path.getmtime(src):
            shutil.copy2(src, dst)


def seed(folder, work_folder_tree, help_folder):
    """Copies the tree and the help pages where missing or older; raises OSError on failure."""
    if work_folder_tree:
        if not os.path.isdir(work_folder_tree):
            raise OSError("no working-folder tree at " + work_folder_tree)
        for macro in MACRO_FOLDERS:
            _copy_newer(work_folder_tree, os.path.join(folder, macro), True)
    if help_folder:
        if not os.path.isdir(help_folder):
            raise OSError("no help pages at " + help_folder)
        _copy_newer(help_folder, os.path.join(folder, HELP_FOLDER), False)


def _property(data_id):
    return "MacroData%d" % data_id


def data_object(doc, create=False):
    obj = doc.getObject(DATA_OBJECT)
    if obj is None and create:
        obj = doc.addObject("App::FeaturePython", DATA_OBJECT)
        obj.Label = "Pluvarine data"
    return obj


def save_macro_data(doc, data_id, path):
    """Keeps the file's bytes as the document's data block `data_id`; False when unreadable."""
    if doc is None or not os.path.isfile(path):
        return False
    obj = data_object(doc, create=True)
    name = _property(data_id)
    if name not in obj.PropertiesList:
        obj.addProperty("App::PropertyFileIncluded", name, "Pluvarine",
                        "The downpipe macro's project data")
    setattr(obj, name, path)
    return True


def load_macro_data(doc, data_id, path):
    """Writes the document's data block `data_id` to path; False when the document has none."""
    obj = data_object(doc) if doc is not None else None
    name = _property(data_id)
    if obj is None or name not in obj.PropertiesList:
        return False
    stored = getattr(obj, name)
    if not stored or not os.path.isfile(stored):
        return False
    shutil.copyfile(stored, path)
    return True


