#!/usr/bin/env bash
# Validates glTF/GLB files with the Khronos glTF validator:
#   tools/validator/validate.sh FILE...
# The npm package is installed on first use into $PLUVARINE_VALIDATOR_DIR (default: build/validator
# of the source tree); concurrent callers wait for each other. Exits 77 (the tests' skip code)
# when node or npm is absent, 1 when a file has errors, 0 when every file is valid.
set -euo pipefail

if ! command -v node >/dev/null 2>&1 || ! command -v npm >/dev/null 2>&1; then
    echo "node/npm not found: glTF validation skipped"
    exit 77
fi

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
dir="${PLUVARINE_VALIDATOR_DIR:-$here/../../build/validator}"

mkdir -p "$dir"
(
    flock 9
    # Reinstall when the pinned versions changed since the last install.
    if [ ! -f "$dir/node_modules/gltf-validator/package.json" ] ||
        ! cmp -s "$here/package-lock.json" "$dir/package-lock.json"; then
        cp "$here/package.json" "$here/package-lock.json" "$dir/"
        npm ci --prefix "$dir" --no-audit --no-fund --loglevel=error >&2
    fi
    if ! cmp -s "$here/validate.js" "$dir/validate.js"; then
        cp "$here/validate.js" "$dir/validate.js.tmp"
        mv "$dir/validate.js.tmp" "$dir/validate.js"
    fi
) 9>"$dir/.lock"

exec node "$dir/validate.js" "$@"
