#!/usr/bin/env bash
# Starts the program: the stand-in host with the sample house, and the downpipe macro beside it.
# Without a display it runs a short scripted demo under Xvfb (pick a wall, design, insert, save)
# and prints where the screenshots and the saved project are.
set -euo pipefail
build="$1"
# The program finds the sample house and the help pages on its own.
program="$build/app/pluvarine"

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  exec "$program"
fi

demo="$(cd "$build" && pwd)/demo"
rm -rf "$demo"
mkdir -p "$demo"
cat > "$demo/script.json" <<JSON
{"steps": [
  {"do": "macroButton"},
  {"do": "click", "x": 5.0, "y": 8.1},
  {"do": "screenshot", "window": "frmMain", "file": "$demo/1-north-bends.png"},
  {"do": "type", "name": "txtdR", "clear": true, "keys": "1200"},
  {"do": "button", "name": "Command1"},
  {"do": "material", "index": 1},
  {"do": "screenshot", "window": "frmMain", "file": "$demo/2-copper-clamps-1200.png"},
  {"do": "button", "name": "Command4"},
  {"do": "macroButton"},
  {"do": "click", "x": -0.1, "y": 4.0},
  {"do": "button", "name": "O72"},
  {"do": "screenshot", "window": "frmMain", "file": "$demo/3-west-72.png"},
  {"do": "button", "name": "Command4"},
  {"do": "macroButton"},
  {"do": "click", "x": 5.0, "y": -0.1},
  {"do": "button", "name": "Command4"},
  {"do": "saveProject", "path": "$demo/house.tproj"},
  {"do": "screenshot", "file": "$demo/4-host-three-downpipes.png"},
  {"do": "screenshot", "window": "partsList", "file": "$demo/5-parts-list.png"},
  {"do": "partsList", "file": "$demo/parts-list.csv"},
  {"do": "exit"}
]}
JSON
xvfb-run -a -s "-screen 0 1600x1200x24" env QT_QPA_PLATFORM=xcb "$program" \
  --program-folder "$demo/programfolder" --script "$demo/script.json" \
  --journal "$demo/journal.jsonl"
# The program ends quietly after a start-up message (say, an incompatible host): then the demo
# has not run to its end.
if [ ! -s "$demo/4-host-three-downpipes.png" ]; then
  echo "The demo did not run to its end: see $demo/journal.jsonl" >&2
  exit 1
fi
echo "No display: ran the scripted demo under Xvfb."
echo "Screenshots:    $demo/*.png"
ls -1 "$demo"/*.png | sed 's/^/  /'
echo "Saved project:  $demo/house.tproj"
echo "Parts list:     $demo/parts-list.csv"
echo "Host journal:   $demo/journal.jsonl"
