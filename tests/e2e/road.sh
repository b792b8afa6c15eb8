#!/bin/bash
# road.sh PROGRAM DRAGSOURCE: the road of a beginner in a real window, with a real pointer: a new database, a
# folder dropped on the browsing tree, clicks, the database closed and opened again. Runs inside Xvfb.
set -euo pipefail
program=$1 dragsource=$2

. "$(dirname "$0")/desk.sh"

folder="$work/Field notes"
mkdir -p "$folder/O'Neil \"x\" %1/deep"
for i in $(seq 40); do echo "note $i" >"$folder/note $i.txt"; done
for i in $(seq 20); do echo "leaf $i" >"$folder/O'Neil \"x\" %1/leaf $i ☃.txt"; done
cp "$folder/note 1.txt" "$folder/O'Neil \"x\" %1/deep/Copy of note 1.txt"

# A new database by the menu and the dialog.
start
db=$work/first.vrn
xdotool key --clearmodifiers alt+d; settled; xdotool key Down Down Return
within 10 window '^Create New Database' || fail "no dialog"
xdotool type --delay 20 "$db"; xdotool key Return
within 10 equals "select count(*) from tags" 0 || fail "no new database"
within 10 window "^Vorna - $db" || fail "the new database is not open"

# The folder on "All files", kept external.
"$dragsource" "$folder" &
source=$!
within 10 window '^Drag source' || fail "no drag source"
pull 1150 670 340 116
within 20 equals "select count(*) from files" 60 || fail "files: $(query 'select count(*) from files')"
equals "select count(*) from files where internal=0" 60 || fail "not all external"
equals "select group_concat(tag_name, '|') from (select tag_name from tags order by 1)" \
    "Field notes|O'Neil \"x\" %1|deep" || fail "tags: $(query 'select tag_name from tags')"
equals "select count(*) from tb_nodes" 3 || fail "nodes"
equals "select count(*) from file_tag ft join tags t using (tag_id) where tag_name like 'O''Neil%'" 21 || fail "links"
within 10 window '^Duplicates' || fail "the copy was not reported"
xdotool key Return
settled
kill $source; wait $source 2>/dev/null || true

# Pictures on the node of a tag, their contents copied into the database this time; one is known already.
pictures="$work/Pictures"
mkdir "$pictures"
for i in $(seq 6); do convert -size 300x200 "gradient:hsl($((i * 50)),60%,50%)-white" "$pictures/view $i.png"; done
cp "$folder/note 7.txt" "$pictures/seven.txt"
xdotool mousemove 393 65 click 1
"$dragsource" "$pictures" &
source=$!
within 10 window '^Drag source' || fail "no second drag source"
pull 1150 670 348 270
within 20 equals "select count(*) from files where internal=1" 6 || fail "not all internal"
equals "select count(*) from thumbnails" 6 || fail "thumbnails"
equals "select count(*) from files join file_tag using (file_id) join tags using (tag_id)
    where internal=1 and tag_name in ('Field notes', 'Pictures')" 12 || fail "tags of the node and of the folder"
equals "select count(*) from files join file_tag using (file_id) join tags using (tag_id)
    where file_name='note 7.txt' and tag_name='Pictures'" 1 || fail "the matched file has not got its folder's tag"
within 10 window '^Duplicates' || fail "the known file was not reported"
xdotool key Return; settled
kill $source; wait $source 2>/dev/null || true

# A search by name, then all that it shows deleted for good.
xdotool mousemove 662 65 click 1; settled
xdotool type "view 3"; xdotool key Return; settled
xdotool mousemove 520 180 click 1; settled
xdotool key shift+Delete; settled
xdotool key Tab; settled; xdotool key Return
within 10 equals "select count(*) from files where file_name like 'view%'" 5 || fail "not deleted"
equals "select count(*) from storage" 5 || fail "blocks of the deleted file"
equals "select count(*) from file_tag where file_id not in (select file_id from files)" 0 || fail "orphans"

# Closed and opened again: it is the newest of the recent list.
close_window
equals "pragma integrity_check" ok || fail "integrity"
settings="$XDG_CONFIG_HOME/Tallowfen Software/Vorna.conf"
sed -i '/^geometry=/d' "$settings"
start
within 10 window "^Vorna - $db" || fail "not opened again"
xdotool mousemove 340 116 click 1; settled
[ -z "${VORNA_E2E_PICTURE:-}" ] || import -window root "$VORNA_E2E_PICTURE"

# A signal ends it as a person would: with its layout stored, and not as the signal's victim.
kill -TERM "$app"
within 10 not_running || fail "still running after a signal"
wait "$app" || fail "killed by the signal"
grep -q '^geometry=' "$settings" || fail "the layout is lost"
ls "$work"/*.dmp 2>/dev/null && fail "a crash dump was written"
echo "The road was walked."
