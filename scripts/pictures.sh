#!/bin/bash
# pictures.sh [BUILD]: takes the pictures of README, docs/ and the help pages anew, in a virtual display and a home
# of its own. BUILD is a folder with the built program; without one the program is built first.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ -z "${VORNA_PICTURES_OF:-}" ]; then
    build=${1:-}
    if [ -z "$build" ]; then
        scripts/install-packages.sh
        cmake --preset program >/dev/null
        cmake --build --preset program
        build=build/program
    fi
    VORNA_PICTURES_OF=$(realpath "$build") exec xvfb-run -a -s "-screen 0 1280x800x24" scripts/pictures.sh
fi

program=$VORNA_PICTURES_OF/app/vorna
help=$PWD/resources/help/pictures
docs=$PWD/docs
mkdir -p "$help"
. tests/e2e/desk.sh
# Alike on every desktop that this is run on.
unset XDG_CURRENT_DESKTOP DESKTOP_SESSION KDE_FULL_SESSION KDE_SESSION_VERSION QT_QPA_PLATFORMTHEME QT_SCALE_FACTOR
export QT_STYLE_OVERRIDE=fusion

# Where the window stands: the picture's points are those of the window without its frame.
left=8 top=24
move() { xdotool mousemove $((left + $1)) $((top + $2)); }
click() { move "$1" "$2"; xdotool click "${3:-1}"; sleep 0.4; }
key() { xdotool key --clearmodifiers "$@"; sleep 0.4; }
from() { pull $((left + $1)) $((top + $2)) $((left + $3)) $((top + $4)); sleep 0.5; }
# small PICTURE FILE COLOURS [OPERATION...]
small() { convert "$1" -strip "${@:4}" +dither -colors "$3" -define png:compression-level=9 "PNG8:$2"; }
# An edge: on a page as bright as itself a picture would have none.
edge=(-bordercolor '#9aa5b1' -border 1)
# take FILE WxH+X+Y [COLOURS [OPERATION...]]: a part of the window, with menus and what is dragged
take() {
    import -window root "$work/shot.png"
    convert "$work/shot.png" -crop 1260x760+$left+$top +repage -crop "$2" +repage "$work/part.png"
    small "$work/part.png" "$help/$1" "${3:-96}" "${@:4}" "${edge[@]}"
}
# dialog FILE TITLE: the window of that title
dialog() {
    within 5 window "$2" || fail "no window $2"
    sleep 0.5
    import -window "$(window "$2")" "$work/shot.png"
    small "$work/shot.png" "$help/$1" 64 "${edge[@]}"
}
# whole FILE: the window
whole() {
    xdotool mousemove $((left + 900)) $((top + 755)); sleep 1
    import -window "$main" "$work/whole.png"
    small "$work/whole.png" "$docs/$1" 255
}

make_home() {
    export HOME=$work/home
    mkdir -p "$HOME"/{Documents/Letters,Music,Pictures/Holiday,Pictures/Garden}
    "$VORNA_PICTURES_OF/tools/makedemo" "$HOME/demo.vrn" "$HOME/Notes" 2>/dev/null
    printf 'Dear all,\n' >"$HOME/Documents/Letters/Invitation.txt"
    printf 'March: 12, April: 15\n' >"$HOME/Documents/Rainfall.txt"
    convert -size 300x200 gradient:skyblue-seagreen "$HOME/Pictures/Holiday/Bay.png"
    db=$HOME/demo.vrn
}

# Two groups as tabs, and room for them.
show_groups() {
    click 263 10; key Down Down Return
    within 5 window '^Edit Tag Groups' || fail "no tag groups"
    key space Down space
    dialog groups.png '^Edit Tag Groups'
    key Escape
    from 444 350 552 350; from 209 350 283 350
}
preferences_picture() {
    click 263 10; key Down Return
    within 5 window '^Preferences$' || fail "no preferences"
    dialog preferences.png '^Preferences$'
    key Escape
}
# The node "Garden" with its branch, and a file of it.
show_garden() {
    click 430 315; key Right
    click 670 150
    from 415 453 415 415
}
# A picture of the node.
previewer_picture() {
    click 670 150; key Return
    within 5 window ' of [0-9]*$' || fail "no previewer"
    xdotool windowsize --sync "$(window ' of [0-9]*$')" 600 470
    dialog previewer.png ' of [0-9]*$'
    key Escape
}
tags_pictures() {
    click 240 577; take group.png 284x534+0+60 64 -chop 0x230+0+230
    click 105 577; take dtags.png 284x534+0+60 64 -chop 0x190+0+300
    click 35 577
    # Favourite and Travel, both asked for.
    click 60 278; move 60 530; xdotool keydown ctrl click 1 keyup ctrl; sleep 0.3; key Tab
    take bar.png 600x290+556+62 128
}

trees_pictures() {
    from 415 415 415 545
    # "- Draft" below "Travel"
    click 430 315; key Left; click 430 337; key Right; click 430 447
    take tree.png 600x436+286+62
    # Every relationship
    click 355 480
    for row in 161 139 117 95; do click 340 $row; key Right; done
    take relationships.png 264x436+286+62 64
    click 480 480; click 430 337; key Left; click 430 315; key Right
    # Two files on their way to the node "Herbs"
    click 670 150; xdotool keydown ctrl; click 880 150; xdotool keyup ctrl
    move 670 150; xdotool mousedown 1; sleep 0.3
    for step in 660,155 640,165 600,250 450,385 420,383 422,381; do move "${step%,*}" "${step#*,}"; sleep 0.2; done
    sleep 0.5; take drag.png 600x436+286+62
    xdotool key Escape; sleep 0.3; xdotool mouseup 1
}

dialogs_pictures() {
    click 430 315; click 880 150; key ctrl+a
    click 96 10; key Up Up Right Down Return
    dialog filetags.png '^Browsing Tree Tags'
    key Escape
    # A name that another file has, in Edit Mode
    click 430 183; click 605 41; key ctrl+e; sleep 0.3
    click 740 135; key F2; key ctrl+a; xdotool type 'Tide times.txt'; sleep 0.3
    take list.png 660x250+556+62
    key Return; sleep 1
    import -window "$(xdotool getactivewindow)" "$work/shot.png"
    small "$work/shot.png" "$help/rename.png" 64 "${edge[@]}"
    key Escape; key Escape; key ctrl+e
}

dark_palette() {
    export XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5
    cat >"$XDG_CONFIG_HOME/kdeglobals" <<'COLOURS'
[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,120,174
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
COLOURS
}

light_pictures() {
    start "$HOME/demo.vrn"
    show_groups
    preferences_picture
    show_garden
    whole mainwindow.png
    convert "$work/whole.png" -resize 600x "$work/scaled.png"
    small "$work/scaled.png" "$help/window.png" 128 "${edge[@]}"
    previewer_picture
    tags_pictures
    trees_pictures
    dialogs_pictures
    click 572 41
    from 415 497 415 415
    close_window
}

dark_picture() {
    dark_palette
    start "$HOME/demo.vrn"
    click 430 315; key Right; click 670 150
    whole mainwindow-dark.png
    close_window
}

make_home
light_pictures
dark_picture
