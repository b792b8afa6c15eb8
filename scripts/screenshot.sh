#!/bin/bash
# screenshot.sh PROGRAM DATABASE PICTURE: opens a copy of the database in a virtual display, with settings of
# its own, saves a picture of the screen and closes the program.
set -euo pipefail
program=$1 database=$2 picture=$3

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$database" "$work/demo.vrn"
# The files that the demo links to lie beside it.
[ ! -d "${database%/*}/demo-files" ] || cp -Rp "${database%/*}/demo-files" "$work"

cat >"$work/session" <<SESSION
set -eu
openbox >/dev/null 2>&1 &
cd "$work"
"$program" "$work/demo.vrn" >"$work/log" 2>&1 &
app=\$!
window=
for _ in \$(seq 100); do
    window=\$(xdotool search --onlyvisible --name '^Vorna - ' 2>/dev/null | head -n 1) || true
    [ -z "\$window" ] || break
    kill -0 \$app || { cat "$work/log" >&2; exit 1; }
    sleep 0.2
done
[ -n "\$window" ] || { echo "The window did not appear." >&2; cat "$work/log" >&2; exit 1; }
sleep 2
for guide in \$(xdotool search --onlyvisible --name '^Quick Start Guide' 2>/dev/null || true); do
    xdotool windowactivate --sync "\$guide" key alt+F4
done
xdotool windowactivate --sync "\$window" windowsize "\$window" 1260 760 windowmove "\$window" 8 24
sleep 1
# A click on the first node of the browsing tree shows all files; then the thumbnails come.
xdotool mousemove 340 113 click 1
sleep 2
import -window root "$picture"
xdotool windowactivate --sync "\$window" key alt+F4
for _ in \$(seq 50); do kill -0 \$app 2>/dev/null || break; sleep 0.1; done
kill \$app 2>/dev/null || true
SESSION

HOME=$work XDG_CONFIG_HOME=$work/config XDG_RUNTIME_DIR=$work LC_ALL=C.UTF-8 LANGUAGE=en QT_QPA_PLATFORM=xcb \
    xvfb-run -a -s "-screen 0 1280x800x24" bash "$work/session"
echo "Screenshot: $picture"
