#!/bin/bash
# with-small-disk.sh COMMAND ...: runs the command with a disk that is soon full in VORNA_SMALL_DISK, which root may
# have: it ends with its name space. Without it those tests are skipped.
set -euo pipefail

if [ "$(id -u)" -eq 0 ] && unshare -m true 2>/dev/null; then
    # shellcheck disable=SC2016 # for the inner shell
    exec unshare -m bash -c 'disk=$(mktemp -d) && mount -t tmpfs -o size=20m none "$disk" 2>/dev/null &&
        export VORNA_SMALL_DISK=$disk; "$@"; result=$?; umount "$disk" 2>/dev/null; rmdir "$disk"; exit $result' \
        - "$@"
fi
exec "$@"
