#!/bin/bash
# Installs the Debian 12 packages that building, running and testing need, and says which.
# Does nothing when all are there. Needs root or sudo only when something is missing. With the argument
# "packaging" also what makes and checks the Debian package.
set -euo pipefail

build=(
    g++ cmake ninja-build ccache git lld          # compiler and build tools
    qtbase5-dev                                   # Qt 5.15: Core, Gui, Widgets, Sql, Network, DBus, Test
    libqt5x11extras5-dev                          # a window that comes forward for another start
    qttools5-dev qttools5-dev-tools               # texts in other languages
    libpq-dev                                     # ending the wait for a server
    libsqlite3-dev libjpeg62-turbo-dev            # the first for db/, both for the benchmarks' reference loops
    librsvg2-bin                                  # icons: SVG to PNG at build time
)
run=(
    libqt5sql5-sqlite libqt5sql5-psql             # database drivers
    qttranslations5-l10n                          # the toolkit's own texts in other languages
    qt5-image-formats-plugins libqt5svg5          # WebP, TIFF, SVG ... as thumbnails
    qtwayland5                                    # without X11 no window comes up otherwise
    fonts-dejavu-core
    ca-certificates                               # whom to believe, where updates are looked for
    xvfb xauth openbox xdotool imagemagick        # a virtual display and a picture of it
)
test=(
    postgresql-15 sqlite3
    openssl                                       # certificates of a server for updates
    python3                                       # mutations: mutate.sh; a reader of exported tables
    dbus                                          # a session bus for two starts of the program
    desktop-file-utils appstream shared-mime-info libglib2.0-bin # checks of the desktop's files
    man-db groff-base bash-completion file
)
packaging=(dpkg-dev lintian)

wanted=("${build[@]}" "${run[@]}" "${test[@]}")
[ "${1:-}" != packaging ] || wanted+=("${packaging[@]}")
missing=()
for package in "${wanted[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing Debian packages: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Run this as root, or install sudo." >&2; exit 1; }
    as_root=(sudo)
fi
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
