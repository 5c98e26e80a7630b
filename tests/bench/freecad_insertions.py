"""Insertions into a real FreeCAD (needs a display: Xvfb): the program's CPU per insertion, and
FreeCAD's wall time per insertion, over the first and the last ten of 60 on the sample house.

Usage: freecad_insertions.py PLUVARINE SOURCE_DIR WORK_DIR
"""

import json
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "freecad"))
import e2e_session as session  # noqa: E402  (reads the same three arguments)

INSERTIONS, WINDOW = 60, 10
MARKS = (1, 1 + WINDOW, INSERTIONS - WINDOW, INSERTIONS)


def steps(folder, project):
    """Insertions along the south, north and west walls, a state after the marked ones."""
    found = []
    for i in range(INSERTIONS):
        along, across = 3.0 + (i // 3 % 20) * 0.2, 2.5 + (i // 3 % 15) * 0.2
        x, y = [(along, -0.1), (along, 8.1), (-0.1, across)][i % 3]
        found += [{"do": "macroButton"}, {"do": "click", "x": x, "y": y},
                  {"do": "button", "name": "Command4"}]
        if i + 1 in MARKS:
            found.append({"do": "state", "file": os.path.join(folder, "s%d.json" % (i + 1))})
    path = os.path.join(folder, "script.json")
    with open(path, "w") as f:
        json.dump({"steps": found + [{"do": "exit"}]}, f)
    return path


def main():
    folder = os.path.join(session.WORK, "insertions")
    session.shutil.rmtree(folder, ignore_errors=True)
    session.freecad(folder, steps)
    try:
        marks = {n: os.path.join(folder, "s%d.json" % n) for n in MARKS}
        cpu = {n: json.load(open(path))["process"] for n, path in marks.items()}
        wall = {n: os.path.getmtime(path) for n, path in marks.items()}
    except (OSError, KeyError, ValueError) as error:
        print("NOT MET  FreeCAD: the session failed (%r; see %s)" % (error, folder))
        return
    first = (cpu[MARKS[1]]["cpuMsBefore"] - cpu[MARKS[0]]["cpuMsAfter"]) / WINDOW
    last = (cpu[MARKS[3]]["cpuMsBefore"] - cpu[MARKS[2]]["cpuMsAfter"]) / WINDOW
    ratio = last / first
    print("%s FreeCAD: the program's CPU per insertion, last %d / first %d of %d (at most 1.2): "
          "%.2f (%.0f ms, %.0f ms)" % ("MET     " if ratio <= 1.2 else "NOT MET ", WINDOW,
                                       WINDOW, INSERTIONS, ratio, first, last))
    print("         FreeCAD: wall time per insertion, first %d / last %d: %.0f / %.0f ms "
          "(FreeCAD redraws every downpipe once per insertion)"
          % (WINDOW, WINDOW, (wall[MARKS[1]] - wall[MARKS[0]]) * 1000 / WINDOW,
             (wall[MARKS[3]] - wall[MARKS[2]]) * 1000 / WINDOW))


main()
