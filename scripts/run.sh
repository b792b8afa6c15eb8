#!/bin/bash
# Installs what is needed, builds the program and opens it on the demo database.
# Without a display it does so in a virtual one and leaves a screenshot.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-packages.sh
cmake --preset program >/dev/null
cmake --build --preset program

build=$PWD/build/program
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    cd "$build"
    exec ./app/vorna demo.vrn
fi
scripts/screenshot.sh "$build/app/vorna" "$build/demo.vrn" "$build/screenshot.png"
