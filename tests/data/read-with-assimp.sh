#!/usr/bin/env bash
# Reads each glTF binary file with a second client, Assimp: `assimp info` and an export to OBJ.
#   tests/data/read-with-assimp.sh FILE...
# Assimp picks its reader by the file name, so each file is read as a .glb (part files are .v3o,
# object files .tob).
# Exits 77 (the tests' skip code) when assimp is not installed, 1 when a file is refused.
set -uo pipefail
if ! command -v assimp >/dev/null 2>&1; then
  echo "assimp not found: reading with assimp skipped"
  exit 77
fi
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
status=0
for file in "$@"; do
  glb="$scratch/file.glb"
  ln -sf "$(realpath "$file")" "$glb"
  if ! assimp info "$glb" >"$scratch/info.txt" 2>&1 || grep -q "ERROR" "$scratch/info.txt"; then
    echo "FAIL assimp info $file"; tail -3 "$scratch/info.txt"; status=1
  elif ! assimp export "$glb" "$scratch/out.obj" >"$scratch/export.txt" 2>&1 ||
    [ ! -s "$scratch/out.obj" ]; then
    echo "FAIL assimp export $file"; tail -5 "$scratch/export.txt"; status=1
  else
    echo "ok $file"
  fi
done
exit $status
