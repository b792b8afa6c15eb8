#!/bin/bash
# packaging.sh CHECK BUILD PROGRAM: checks one of the files that make the program at home on a desktop.
set -euo pipefail
check=$1 build=$2 program=$3
packaging=$(cd "$(dirname "$0")/../packaging" && pwd)
work=$(mktemp -d)
trap 'chmod -R u+w "$work"; rm -rf "$work"' EXIT
export HOME=$work XDG_DATA_HOME=$work/data XDG_CONFIG_HOME=$work/config LC_ALL=C.UTF-8
fail() { echo "FAILED: $*" >&2; exit 1; }
same() { [ "$1" = "$2" ] || fail "$3: \"$1\" in place of \"$2\""; }

desktop() {
    desktop-file-validate "$packaging/vorna.desktop" || fail "the desktop entry"
}

appstream() {
    appstreamcli validate --no-net "$build/packaging/com.tallowfen.vorna.metainfo.xml" || fail "the metadata"
}

typed() { same "$(gio info -a standard::content-type "$1" | sed -n 's/.*content-type: //p')" "$2" "type of $1"; }
mime() {
    mkdir -p "$XDG_DATA_HOME/mime/packages"
    cp "$packaging/vorna-mime.xml" "$XDG_DATA_HOME/mime/packages/vorna.xml"
    update-mime-database "$XDG_DATA_HOME/mime"
    cd "$work"
    cp "$build/demo.vrn" named.vrn
    cp named.vrn nameless
    typed named.vrn application/x-vorna-database
    typed nameless application/x-vorna-database
    sqlite3 nameless 'PRAGMA application_id=0x56726E73'
    typed nameless application/x-vorna-shell
    # Made before databases had an id, and by others.
    sqlite3 nameless 'PRAGMA application_id=0'
    typed nameless application/vnd.sqlite3
    mv nameless old.vrn
    typed old.vrn application/x-vorna-database
    mv old.vrn old.vsh
    typed old.vsh application/x-vorna-shell
    for type in $(sed -n 's/^MimeType=//p' "$packaging/vorna.desktop" | tr ';' ' '); do
        for size in 16x16 512x512; do
            icon=$build/packaging/icons/hicolor/$size/mimetypes/${type//\//-}.png
            same "$(file -b "$icon" | cut -d, -f2)" " ${size/x/ x }" "icon of $type"
        done
    done
}

manual() {
    for page in vorna vorna-demo; do
        warnings=$(MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$build/packaging/$page.1" 2>&1 >/dev/null)
        same "$warnings" "" "warnings of $page.1"
    done
}

# What a Tab offers after the words.
offered() {
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE="$*" COMP_POINT=${#COMP_LINE} COMPREPLY=()
    _vorna vorna "${COMP_WORDS[-1]}" "${COMP_WORDS[-2]}" || true
    printf '%s\n' "${COMPREPLY[@]}" | sort | xargs
}
completion() {
    [ -e /usr/share/bash-completion/bash_completion ] || exit 77
    set +eu
    . /usr/share/bash-completion/bash_completion
    . "$packaging/vorna.bash"
    cd "$work"
    mkdir folder; touch one.vrn two.vsh other.txt
    same "$(offered vorna --)" "--help --version" "options"
    same "$(offered vorna "")" "folder one.vrn two.vsh" "files"
    same "$(offered vorna one.vrn "")" "" "a second argument"
}

arguments() {
    unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
    same "$("$program" --version)" "Vorna $(sed -n 's/.*release version="\([^"]*\)".*/\1/p' \
        "$build/packaging/com.tallowfen.vorna.metainfo.xml")" "version"
    "$program" --help | grep -q -- '--version' || fail "no help"
    same "$(ls "$work")" "" "left behind by a question"
}

# The demo in an installed tree whose program tells what it was to open.
demo() {
    mkdir -p "$work/usr/bin" "$work/usr/share/vorna/demo" "$work/Documents"
    cp "$packaging/vorna-demo" "$work/usr/bin"
    printf '#!/bin/sh\nreadlink -f "$1"\n' >"$work/usr/bin/vorna"; chmod +x "$work/usr/bin/vorna"
    cp -Rp "$build/demo.vrn" "$build/demo-files" "$work/usr/share/vorna/demo"
    chmod -R a-w "$work/usr/share/vorna"
    mkdir -p "$XDG_CONFIG_HOME"
    echo 'XDG_DOCUMENTS_DIR="$HOME/Documents"' >"$XDG_CONFIG_HOME/user-dirs.dirs"
    mine="$work/Documents/Vorna demo/demo.vrn"
    command -v xdg-user-dir >/dev/null || mine="$work/Vorna demo/demo.vrn"
    same "$("$work/usr/bin/vorna-demo")" "$mine" "the copy"
    sqlite3 "$mine" "select rel_path, modification_date from files join file_paths on storage_id=path_id
        where internal=0" | while IFS='|' read -r path time; do
        same "$(stat -c %Y "$(dirname "$mine")/$path")" "$time" "time of $path"
    done
    same "$(sqlite3 "$mine" "select count(*) from file_paths where path like '%$(basename "$build")%'")" 0 "build folder"
    sqlite3 "$mine" "update tags set tag_name='mine' where tag_id=1"
    same "$("$work/usr/bin/vorna-demo")" "$mine" "the copy again"
    same "$(sqlite3 "$mine" "select tag_name from tags where tag_id=1")" mine "what the user did"
    rm -rf "$work/Documents" "$work/Vorna demo"
    same "$(HOME=/dev/null "$work/usr/bin/vorna-demo" 2>/dev/null)" \
        "$work/usr/share/vorna/demo/demo.vrn" "without a place for a copy"
}

"$check"
