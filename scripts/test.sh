#!/bin/bash
# Installs what is needed, builds everything and runs all tests, headless. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${VORNA_PRESET:-dev}
scripts/install-packages.sh
# A build from scratch reads the toolkit's headers once; one that is there stays as it is.
[ -e "build/$preset/CMakeCache.txt" ] || fresh=(-DVORNA_PCH=ON)
cmake --preset "$preset" -DVORNA_BENCH=ON ${fresh[@]+"${fresh[@]}"} >/dev/null
cmake --build --preset "$preset"
exec scripts/with-small-disk.sh scripts/with-postgres.sh ctest --preset "$preset" -j2 "$@"
