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
