#!/bin/bash
# secondstart.sh PROGRAM DATABASE: a start with a database that a window has open brings that window forward, under
# whatever name the file goes, and opens it itself when nobody answers. Runs inside Xvfb with a session bus.
set -euo pipefail
program=$1
. "$(dirname "$0")/desk.sh"
mkdir "$work/a place"
db="$work/a place/first.vrn"
cp "$2" "$db"; cp "$2" "$work/other.vrn"
ln -s "$db" "$work/link.vrn"; ln "$db" "$work/hard link.vrn"
windows() { [ "$(xdotool search --onlyvisible --name '^Vorna - ' | wc -l)" -eq "$1" ]; }
active() { [ "$(xdotool getactivewindow)" = "$1" ]; }
again() { (cd "$work" && timeout 30 "$program" "$1" >>"$work/log" 2>&1) || fail "start with $1 failed or stayed"; }

start "$db"
first=$main firstApp=$app
(cd "$work" && exec "$program" other.vrn >/dev/null 2>&1) &
other=$!
within 20 windows 2 || fail "another database did not get a window of its own"
within 5 window '^Vorna - .*other.vrn' || fail "the other database is not open"
otherWindow=$(window '^Vorna - .*other.vrn')

for spelling in "$db" "a place/../a place/first.vrn" link.vrn "hard link.vrn"; do
    xdotool windowactivate --sync "$otherWindow"
    again "$spelling"
    within 5 active "$first" || fail "the window did not come forward for $spelling"
done
xdotool windowminimize --sync "$first"
again link.vrn
within 5 active "$first" || fail "the window stayed minimized"
again "$work/other.vrn"
within 5 active "$otherWindow" || fail "not the window of the other database"
windows 2 || fail "a database was opened twice"

# A shell goes to the window that was opened last.
cp "$work/other.vrn" "$work/some.vsh"
sqlite3 "$work/some.vsh" "drop table storage; drop table storage_info; drop table thumbnails"
again some.vsh
within 5 window '^Import Options' || fail "the shell was not offered"
xdotool key Escape
within 5 active "$otherWindow" || fail "the shell went to another window"

# A name goes with its owner, however that one ends. Another session of the user has a bus of its own: there is no
# window to show there.
kill $other; wait $other || true
kill -9 $firstApp; wait $firstApp 2>/dev/null || true
start "$db"
kill -0 $app || fail "a dead window was asked"
(cd "$work" && DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent exec "$program" "$db" >/dev/null 2>&1) &
within 20 windows 2 || fail "no window without a bus"
kill $!; wait $! || true
within 5 windows 1
close_window
start "$db"
close_window
echo "One window for each database."
