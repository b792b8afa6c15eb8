#!/bin/bash
# drags.sh PROGRAM DATABASE: every drag of the two trees with a real pointer, on a copy of the demo database,
# and the order by hand after a restart. Runs inside Xvfb.
set -euo pipefail
program=$1
. "$(dirname "$0")/desk.sh"
height=960
db=$work/drags.vrn
cp "$2" "$db"
id() { query "select tag_id from tags where tag_name='$1'"; }
node() { query "select node_id from tb_nodes join tb_node_links on child_id=node_id where tag_id=$(id "$1") and parent_id=0"; }
# The parent of the newest node, whose tag must be the one named.
newest() { equals "select parent_id from tb_nodes join tb_node_links on child_id=node_id where tag_id=$(id "$1")
    and node_id=(select max(node_id) from tb_nodes)" "$2"; }
has_path() { equals "select count(*) from tag_relationships where relationship_path='$1'" 1; }

# Tags are dragged from the first two rows of their table: Baking at 138, City at 161. The rows of the trees are
# 22 pixels high, and the first is at 116; the nodes of tags begin with Cooking at 270.
start "$db"
cooking=$(node Cooking) soups=$(node Soups) garden=$(node Garden)
pull 60 138 340 336
within 5 newest Baking "$garden" || fail "no node below Garden"
xdotool keydown alt; pull 60 161 340 270; xdotool keyup alt
within 5 newest City 0 || fail "no node above Cooking"
city=$(node City)
equals "select parent_id from tb_node_links where child_id=$cooking" "$city" || fail "Cooking is not below City"
pull 60 138 340 160
within 2 newest City 0 || fail "a fixed node took a tag"
# Cooking lies open below City, which has its place; Soups goes above both.
pull 345 380 345 263; settled

# The relationships: Cooking, Outdoors, Garden, Workshop.
xdotool mousemove 247 614 click 1; settled
pull 60 138 340 138
within 5 has_path "$(id Outdoors).$(id Baking)" || fail "no relationship below Outdoors"
pull 335 248 335 270
place=$(id Workshop).$(id Garden)
within 5 has_path "$place" || fail "Garden is not below Workshop"
for tag in Flowers Vegetables Herbs; do has_path "$place.$(id $tag)" || fail "$tag did not come along"; done
paths=$(query "select count(*) from tag_relationships")
pull 60 138 340 116
within 5 window '^Error creating tag relationship' || fail "no warning"
xdotool key Return; settled
equals "select count(*) from tag_relationships" "$paths" || fail "an illegal relationship was made"

close_window
start "$db"
xdotool mousemove 374 614 click 1; settled
pull 60 161 340 270
within 5 newest City "$soups" || fail "the order by hand is not kept"
# A file of Soups on City, the next node.
xdotool mousemove 340 270 click 1; settled
pull 564 180 340 314
within 5 equals "select count(*) from file_tag where tag_id=$(id City) and file_id in
    (select file_id from file_tag where tag_id=$(id Soups))" 1 || fail "the file has not got the tag of City"
[ -z "${VORNA_E2E_PICTURE:-}" ] || import -window root "$VORNA_E2E_PICTURE"
close_window
equals "select count(*) from tb_node_links where child_id not in (select node_id from tb_nodes)" 0 || fail "orphans"
echo "All has been dragged."
