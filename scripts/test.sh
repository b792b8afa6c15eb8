#!/bin/bash
# Installs what is needed, builds everything and runs all tests, headless. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${VORNA_PRESET:-dev}
scripts/install-packages.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
exec scripts/with-small-disk.sh scripts/with-postgres.sh ctest --preset "$preset" -j2 "$@"
