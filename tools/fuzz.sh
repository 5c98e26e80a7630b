#!/usr/bin/env bash
# Runs each libFuzzer target for a bounded time; new corpus entries land in tests/fuzz/corpus/<target>.
set -euo pipefail
build="$1"; seconds="$2"
shopt -s nullglob
for f in "$build"/tests/fuzz/fuzz_*; do
  [ -x "$f" ] || continue
  name=$(basename "$f")
  corpus="tests/fuzz/corpus/${name#fuzz_}"
  mkdir -p "$corpus"
  echo "== $name for ${seconds}s (corpus $corpus)"
  "$f" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 "$corpus"
done
