#!/usr/bin/env bash
# Runs every benchmark program of the release build; GL benchmarks under Xvfb.
set -euo pipefail
build="$1"
shopt -s nullglob
for b in "$build"/tests/bench/bench_*; do
  [ -f "$b" ] && [ -x "$b" ] || continue # skips the build's *_autogen folders
  echo "== $(basename "$b")"
  xvfb-run -a -s "-screen 0 1600x1200x24" "$b" --benchmark_counters_tabular=true
done
# The same insertions into a real FreeCAD, when it is installed.
if command -v freecad >/dev/null 2>&1; then
  echo "== freecad_insertions"
  xvfb-run -a -s "-screen 0 1600x1200x24" python3 "$(dirname "$0")/../tests/bench/freecad_insertions.py" \
    "$build/app/pluvarine" "$(dirname "$0")/.." "$build/freecad-bench"
fi
