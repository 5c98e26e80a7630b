# Runs one test module of the FreeCAD add-on inside FreeCAD (freecadcmd, or the GUI under Xvfb).
# FreeCAD ignores a script's exit status, so the result leaves through os._exit.
# Environment: PLUVARINE_ADDON (the add-on folder), PLUVARINE_TEST (the test module's path).
import os
import sys
import traceback
import unittest

try:
    sys.path.insert(0, os.environ["PLUVARINE_ADDON"])
    test_path = os.environ["PLUVARINE_TEST"]
    sys.path.insert(0, os.path.dirname(test_path))
    module = __import__(os.path.splitext(os.path.basename(test_path))[0])
    suite = unittest.defaultTestLoader.loadTestsFromModule(module)
    result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2).run(suite)
    sys.stdout.flush()
    os._exit(0 if result.wasSuccessful() else 1)
except BaseException:
    traceback.print_exc()
    sys.stdout.flush()
    os._exit(1)
