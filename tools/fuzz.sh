#!/usr/bin/env bash
# Runs each libFuzzer target for a bounded time, then keeps a minimized corpus in
# tests/fuzz/corpus/<target> (replayed by `make test`). A crash, leak or timeout stops with a
# non-zero exit and leaves the input in build/fuzz-artifacts/.
#   tools/fuzz.sh BUILD_DIR SECONDS_PER_TARGET
set -euo pipefail
build="$1"; seconds="$2"
artifacts="build/fuzz-artifacts"
mkdir -p "$artifacts"
shopt -s nullglob
for f in "$build"/tests/fuzz/fuzz_*; do
  [ -f "$f" ] && [ -x "$f" ] || continue
  name=$(basename "$f")
  corpus="tests/fuzz/corpus/${name#fuzz_}"
  mkdir -p "$corpus"
  found=$(mktemp -d)
  merged=$(mktemp -d)
  echo "== $name for ${seconds}s (corpus $corpus)"
  "$f" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
       -artifact_prefix="$artifacts/$name-" "$found" "$corpus"
  # Keep only the inputs that add coverage, so the kept corpus stays small.
  "$f" -merge=1 "$merged" "$corpus" "$found" 2>/dev/null
  rm -f "$corpus"/*
  cp "$merged"/* "$corpus"/ 2>/dev/null || true
  echo "== $name: $(ls "$corpus" | wc -l) corpus files kept"
  rm -rf "$found" "$merged"
done
