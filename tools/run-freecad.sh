#!/usr/bin/env bash
# Installs the FreeCAD add-on for the user and opens FreeCAD on the sample house with the
# Pluvarine button in its toolbar. Without a display it runs a scripted demo under Xvfb (four
# sides picked, designed and inserted, the document saved) and prints where the screenshots of
# FreeCAD, the saved document and the journal are (build/<preset>/freecad-demo/).
set -euo pipefail
build="$(cd "$1" && pwd)"
root="$(cd "$(dirname "$0")/.." && pwd)"
program="$build/app/pluvarine"
addon="$root/platform/freecad-addon"
mods="${XDG_DATA_HOME:-$HOME/.local/share}/FreeCAD/Mod"

install_addon() { # $1: the Mod folder
  local target="$1/Pluvarine"
  rm -rf "$target"
  mkdir -p "$target/Resources"
  cp -r "$addon/." "$target/"
  rm -rf "$target"/pluvarine_freecad/__pycache__
  cp "$root/ui/assets/bild.svg" "$target/Resources/"
  cp "$root/data/sample/house.json" "$target/"
  echo "$program" > "$target/program-path.txt"
}

# FreeCAD's start page (QtWebEngine) refuses to run as root unless its sandbox is off.
if [ "$(id -u)" -eq 0 ]; then export QTWEBENGINE_DISABLE_SANDBOX=1; fi

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  install_addon "$mods"
  echo "Installed the Pluvarine add-on in $mods/Pluvarine"
  exec freecad "$mods/Pluvarine/open_building.py"
fi

demo="$build/freecad-demo"
rm -rf "$demo"
mkdir -p "$demo/home"
home="$demo/home"
install_addon "$home/.local/share/FreeCAD/Mod"
install_addon "$mods"
cat > "$demo/script.json" <<JSON
{"steps": [
  {"do": "macroButton"}, {"do": "click", "x": 5.0, "y": -0.1},
  {"do": "button", "name": "Command4"},
  {"do": "macroButton"}, {"do": "click", "x": 10.1, "y": 4.0},
  {"do": "answer", "choice": "bend"},
  {"do": "screenshot", "window": "frmMain", "file": "$demo/1-east-kinks.png"},
  {"do": "button", "name": "Command4"},
  {"do": "macroButton"}, {"do": "click", "x": 5.0, "y": 8.1},
  {"do": "material", "index": 1},
  {"do": "button", "name": "Command4"},
  {"do": "macroButton"}, {"do": "click", "x": -0.1, "y": 4.0},
  {"do": "button", "name": "O72"},
  {"do": "button", "name": "Command4"},
  {"do": "saveProject", "path": "$demo/house.FCStd"},
  {"do": "screenshot", "window": "host", "file": "$demo/2-freecad-four-downpipes.png"},
  {"do": "exit"}
]}
JSON
cat > "$demo/session.sh" <<SH
#!/usr/bin/env bash
set -u
export HOME="$home" XDG_DATA_HOME="$home/.local/share" XDG_CONFIG_HOME="$home/.config"
export PLUVARINE_HOST_SOCKET="$demo/host.sock" PLUVARINE_READY_FILE="$demo/ready"
unset XDG_RUNTIME_DIR
freecad "$home/.local/share/FreeCAD/Mod/Pluvarine/open_building.py" > "$demo/freecad.log" 2>&1 &
host=\$!
for _ in \$(seq 240); do [ -e "$demo/ready" ] && [ -S "$demo/host.sock" ] && break; sleep 0.5; done
if [ ! -e "$demo/ready" ]; then echo "FreeCAD did not open the sample house: see $demo/freecad.log" >&2; kill \$host; exit 1; fi
QT_QPA_PLATFORM=xcb timeout 600 "$program" --host-socket "$demo/host.sock" \
  --script "$demo/script.json" --journal "$demo/journal.jsonl"
status=\$?
for _ in \$(seq 60); do kill -0 \$host 2>/dev/null || break; sleep 0.5; done
kill \$host 2>/dev/null
exit \$status
SH
xvfb-run -a -s "-screen 0 1600x1200x24" bash "$demo/session.sh"
echo "No display: ran the scripted demo with FreeCAD under Xvfb."
echo "Screenshots:    $demo/*.png"
ls -1 "$demo"/*.png | sed 's/^/  /'
echo "Saved document: $demo/house.FCStd"
echo "Journal:        $demo/journal.jsonl"
