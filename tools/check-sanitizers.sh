#!/usr/bin/env bash
# Every test under AddressSanitizer, UndefinedBehaviorSanitizer and LeakSanitizer (the asan
# preset, built before), then each libFuzzer target (the fuzz preset) for a bounded time on a
# copy of its corpus; the kept corpus is not changed (`make fuzz` does that).
#   tools/check-sanitizers.sh SECONDS_PER_FUZZER
set -euo pipefail
seconds="$1"
root="$(cd "$(dirname "$0")/.." && pwd)"

# Leaks of third-party libraries only (see the file); our own faults fail the run.
export LSAN_OPTIONS="suppressions=$root/tools/sanitizers/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
# The Mesa driver stays loaded to the end (see lsan.supp); ASan then does not insist on being
# first in the library list, which only the driver precedes.
driver="/usr/lib/$(gcc -print-multiarch)/dri/swrast_dri.so"
export ASAN_OPTIONS="detect_leaks=1:verify_asan_link_order=0"
if [ -f "$driver" ]; then
  export LD_PRELOAD="$driver${LD_PRELOAD:+ $LD_PRELOAD}"
fi
cd "$root"
xvfb-run -a -s "-screen 0 1600x1200x24" ctest --preset asan

unset LD_PRELOAD
mkdir -p build/fuzz-artifacts
shopt -s nullglob
for f in build/fuzz/tests/fuzz/fuzz_*; do
  [ -f "$f" ] && [ -x "$f" ] || continue
  name=$(basename "$f")
  corpus=$(mktemp -d)
  cp tests/fuzz/corpus/"${name#fuzz_}"/* "$corpus"/ 2>/dev/null || true
  echo "== $name for ${seconds}s"
  status=0
  "$f" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
       -artifact_prefix="build/fuzz-artifacts/$name-" "$corpus" || status=$?
  rm -rf "$corpus"
  [ "$status" -eq 0 ] || exit "$status"
done
