#!/bin/bash
# Makes the Debian package, checks it and prints its path.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-packages.sh packaging
cmake --preset program >/dev/null
cmake --build --preset program
cd build/program
cpack --config CPackConfig.cmake -B packages >/dev/null
package=$(ls -t packages/vorna_*.deb | head -n 1)
lintian --allow-root --fail-on error,warning --display-info "$package"
echo "Package: $PWD/$package"
