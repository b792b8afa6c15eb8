#!/bin/bash
# Installs what is needed, builds everything and runs all tests, headless. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${VORNA_PRESET:-dev}
scripts/install-packages.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
tests=(scripts/with-postgres.sh ctest --preset "$preset" -j2 "$@")
# A disk that is soon full, which root may have: it ends with its name space. Without it those tests are skipped.
if [ "$(id -u)" -eq 0 ] && unshare -m true 2>/dev/null; then
    # shellcheck disable=SC2016 # for the inner shell
    exec unshare -m bash -c 'disk=$(mktemp -d) && mount -t tmpfs -o size=20m none "$disk" 2>/dev/null &&
        export VORNA_SMALL_DISK=$disk; "$@"; result=$?; umount "$disk" 2>/dev/null; rmdir "$disk"; exit $result' \
        - "${tests[@]}"
fi
exec "${tests[@]}"
