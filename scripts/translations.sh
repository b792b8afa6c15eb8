#!/bin/bash
# Brings the .ts files up to date with the texts of the sources, or those in another folder that is named.
# What is no longer asked for goes; what is new stands there unfinished.
set -euo pipefail
target=$(realpath "${1:-$(dirname "$0")/../translations}")
cd "$(dirname "$0")/.."

export PATH=/usr/lib/qt5/bin:$PATH
update() {
    lupdate -silent -no-obsolete -locations none -source-language en -I . app core db fileops models net ui "$@"
}
update -ts "$target/vorna_de.ts" "$target/vorna_fr.ts"
update -pluralonly -ts "$target/vorna_en.ts"
