#!/usr/bin/env bash
# Starts the program. Until the windows exist it composes the default design headlessly.
set -euo pipefail
build="$1"
if [ -x "$build/app/pluvarine" ]; then
  exec "$build/app/pluvarine"
fi
exec "$build/app/pluvarine-cli" compose
