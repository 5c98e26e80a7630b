"""One session of the program with a real FreeCAD as its host (needs a display: Xvfb).

The four sides of the sample house are picked, designed and inserted, the document is saved,
closed and opened again, and one more downpipe is inserted. The same script runs against the
stand-in host; FreeCAD must give the same roof values, heights, constructions and placements.
Usage: e2e_session.py PLUVARINE SOURCE_DIR WORK_DIR. Every wait is bounded; FreeCAD is killed
at the end whatever happens.
"""

import json
import os
import shutil
import signal
import subprocess
import sys
import time

PROGRAM, SOURCE, WORK = sys.argv[1], os.path.abspath(sys.argv[2]), os.path.abspath(sys.argv[3])
ADDON = os.path.join(SOURCE, "platform", "freecad-addon")
SIDES = [("south", 5.0, -0.1), ("east", 10.1, 4.0), ("north", 5.0, 8.1), ("west", -0.1, 4.0)]
failures = []


def check(ok, what):
    if not ok:
        failures.append(what)
        print("FAIL:", what)


def script(folder, project):
    steps = []
    for name, x, y in SIDES:
        steps += [{"do": "macroButton"}, {"do": "click", "x": x, "y": y}]
        if name == "east":
            steps.append({"do": "answer", "choice": "bend"})
        steps += [{"do": "state", "file": os.path.join(folder, name + ".json")},
                  {"do": "button", "name": "Command4"}]
    for name, step in [("saved", {"do": "saveProject", "path": project}),
                       ("closed", {"do": "closeProject"}),
                       ("opened", {"do": "openProject", "path": project})]:
        steps += [step, {"do": "state", "file": os.path.join(folder, name + ".json")}]
    steps += [{"do": "screenshot", "window": "host", "file": os.path.join(folder, "host.png")},
              {"do": "macroButton"}, {"do": "click", "x": 5.0, "y": -0.1},
              {"do": "button", "name": "Command4"},
              {"do": "state", "file": os.path.join(folder, "continued.json")}, {"do": "exit"}]
    path = os.path.join(folder, "script.json")
    with open(path, "w") as f:
        json.dump({"steps": steps}, f, indent=1)
    return path


def run_macro(folder, args, timeout):
    # German: the macro reads the host's version number with a decimal comma.
    env = dict(os.environ, QT_QPA_PLATFORM="xcb", LANGUAGE="de", LANG="de_DE.UTF-8")
    env.pop("LC_ALL", None)
    with open(os.path.join(folder, "stderr.txt"), "w") as err:
        return subprocess.run([PROGRAM] + args + ["--language", "de_DE", "--journal",
                                                  os.path.join(folder, "journal.jsonl")],
                              env=env, stdout=err, stderr=err, timeout=timeout).returncode


def state(folder, name):
    with open(os.path.join(folder, name + ".json")) as f:
        return json.load(f)


def stand_in(folder):
    os.makedirs(folder)
    steps = script(folder, os.path.join(folder, "house.tproj"))
    code = run_macro(folder, ["--building", os.path.join(SOURCE, "data", "sample", "house.json"),
                              "--program-folder", os.path.join(folder, "programfolder"),
                              "--version-text", "Tectaro +2026",
                              "--script", steps], 300)
    check(code == 0, "the stand-in session ends with 0, not %s" % code)


def freecad(folder, make_script=script):
    os.makedirs(folder)
    home = os.path.join(folder, "home")
    mods = os.path.join(home, ".local", "share", "FreeCAD", "Mod")
    os.makedirs(mods)
    os.symlink(ADDON, os.path.join(mods, "Pluvarine"))
    sock = os.path.join(folder, "host.sock")
    ready = os.path.join(folder, "ready")
    env = dict(os.environ, HOME=home, XDG_DATA_HOME=os.path.join(home, ".local", "share"),
               XDG_CONFIG_HOME=os.path.join(home, ".config"), PLUVARINE_HOST_SOCKET=sock,
               PLUVARINE_READY_FILE=ready, PLUVARINE_PROGRAM=PROGRAM,
               QTWEBENGINE_DISABLE_SANDBOX="1", LANG="en_US.UTF-8")
    env.pop("XDG_RUNTIME_DIR", None)
    log = open(os.path.join(folder, "freecad.log"), "w")
    host = subprocess.Popen(["freecad", os.path.join(ADDON, "open_building.py")], env=env,
                            stdout=log, stderr=log, start_new_session=True)
    try:
        deadline = time.time() + 120
        while not (os.path.exists(ready) and os.path.exists(sock)) and time.time() < deadline:
            if host.poll() is not None:
                break
            time.sleep(0.5)
        check(os.path.exists(ready), "FreeCAD opens the sample house (see freecad.log)")
        if failures:
            return
        steps = make_script(folder, os.path.join(folder, "house.FCStd"))
        code = run_macro(folder, ["--host-socket", sock, "--script", steps], 400)
        check(code == 0, "the FreeCAD session ends with 0, not %s (see stderr.txt)" % code)
        try:
            host.wait(timeout=30)
        except subprocess.TimeoutExpired:
            check(False, "FreeCAD ends after the script's exit")
    finally:
        if host.poll() is None:
            os.killpg(host.pid, signal.SIGKILL)
            host.wait()
        log.close()


def near(a, b, tolerance):
    return abs(a - b) <= tolerance


def compare(reference, real):
    for name, _, _ in SIDES:
        want, got = state(reference, name)["macro"], state(real, name)["macro"]
        for key, value in want["roof"].items():
            tolerance = 0.01 if key in ("roofPitch", "roofDirection") else 0.5
            check(near(got["roof"][key], value, tolerance),
                  "%s: %s %s, the stand-in %s" % (name, key, got["roof"][key], value))
        check(near(got["design"]["heightH"], want["design"]["heightH"], 0.5),
              "%s: heightH %s, the stand-in %s" % (name, got["design"]["heightH"],
                                                 want["design"]["heightH"]))
        check(got["construction"] == want["construction"], "%s: construction" % name)
    want = state(reference, "saved")["host"]["elements"]
    got = state(real, "saved")["host"]["elements"]
    check(len(got) == 4, "four downpipes in the saved document, not %d" % len(got))
    for w, g in zip(want, got):
        check(g["name"] == w["name"], "element %s named %s" % (w["name"], g["name"]))
        check(all(near(a, b, 0.0005) for a, b in zip(g["matrix"], w["matrix"])),
              "%s: matrix %s, the stand-in %s" % (w["name"], g["matrix"], w["matrix"]))


def project(real):
    saved, closed, opened = (state(real, n) for n in ("saved", "closed", "opened"))
    continued = state(real, "continued")
    check(saved["host"]["lastChunkCount"] == 1, "the save announces one data block")
    check([o["name"] for o in saved["obj"]] == [" 1.tob", " 2.tob", " 3.tob", " 4.tob",
                                                 "Data.ini"], "obj holds the four files")
    check(closed["obj"] == [] and closed["host"]["button"]["enabled"] is False,
          "closing the document empties obj and disables the button")
    check(opened["obj"] == saved["obj"], "obj comes back byte for byte from the .FCStd")
    before, after = saved["host"]["elements"], opened["host"]["elements"]
    check([(e["name"], e["matrix"]) for e in after] == [(e["name"], e["matrix"]) for e in before]
          and all(near(a, b, 1e-6) for e, f in zip(before, after)
                  for a, b in zip(e["worldMin"] + e["worldMax"], f["worldMin"] + f["worldMax"])),
          "the reopened document holds the four downpipes with their matrices")
    check(opened["macro"]["objectCounter"] == 5, "the counter continues at 5")
    names = [e["name"] for e in continued["host"]["elements"]]
    check(names[-1:] == [" 5.tob"] and len(names) == 5, "the next downpipe is number 5")
    check(os.path.getsize(os.path.join(real, "host.png")) > 0, "a screenshot of FreeCAD")


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    reference, real = os.path.join(WORK, "standin"), os.path.join(WORK, "freecad")
    stand_in(reference)
    freecad(real)
    if not failures:
        try:
            compare(reference, real)
            project(real)
        except (OSError, KeyError, TypeError, ValueError) as error:
            check(False, "a state the session should have written: %r" % error)
    print("%d failure(s); files in %s" % (len(failures), WORK))
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
