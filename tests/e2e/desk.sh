# Sourced by the scripts beside it, with $program set: a home and a window manager of this run alone, and what a
# hand does. Runs inside Xvfb.
work=$(mktemp -d)
# The session bus and the settings are of this run alone.
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_RUNTIME_DIR=$work QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8 LANGUAGE=en
trap 'kill $(jobs -p) 2>/dev/null || true; wait 2>/dev/null || true; rm -rf "$work"' EXIT
mkdir -p "$XDG_CONFIG_HOME/Tallowfen Software"
printf '[General]\nlastVersionUsed=4.1.3\n' >"$XDG_CONFIG_HOME/Tallowfen Software/Vorna.conf"

fail() { echo "FAILED: $*" >&2; [ -z "${VORNA_E2E_PICTURE:-}" ] || import -window root "$VORNA_E2E_PICTURE"; exit 1; }
within() { # within SECONDS COMMAND...: waits until the command succeeds
    local end=$((SECONDS + $1)); shift
    until "$@" >/dev/null 2>&1; do [ $SECONDS -lt $end ] || return 1; sleep 0.2; done
}
# settled: what was asked for has been done, as no thread of the program runs, or has run for a moment
ticks() { cat /proc/"$app"/task/*/stat | sed 's/.*) //' | awk '$1 ~ /[RD]/ { busy = 1 } { sum += $12 + $13 } END { print busy ? "busy" : sum }'; }
is_settled() { local before; before=$(ticks); sleep 0.5; [ "$before" != busy ] && [ "$(ticks)" = "$before" ]; }
settled() { within 20 is_settled || fail "the program does not come to rest"; }
query() { sqlite3 -readonly -cmd '.timeout 3000' "$db" "$1"; }
equals() { [ "$(query "$1")" = "$2" ]; }
window() { xdotool search --onlyvisible --name "$1" | head -n 1 | grep .; }
height=760 # of the window; the screen of a run is a little higher
find_main() { main=$(window '^Vorna - '); }
start() {
    (cd "$work" && exec "$program" "$@" >"$work/log" 2>&1) &
    app=$!
    # Found and kept in one look: a search fails when a window, such as the splash screen, goes meanwhile.
    within 20 find_main || fail "no window"
    xdotool windowactivate --sync "$main" windowsize --sync "$main" 1260 "$height" windowmove "$main" 8 24
    settled
}
# pull X1 Y1 X2 Y2: from one point to another with the button held, by the small and the large moves of a hand
pull() {
    local step
    xdotool mousemove "$1" "$2" mousedown 1; sleep 0.2
    xdotool mousemove $(($1 + 4)) $(($2 + 4)); sleep 0.1; xdotool mousemove $(($1 + 10)) $(($2 + 10)); sleep 0.2
    for step in 1 2 3; do
        xdotool mousemove $(($1 + ($3 - $1) * step / 4)) $(($2 + ($4 - $2) * step / 4)); sleep 0.1
    done
    xdotool mousemove $(($3 + 4)) $(($4 + 1)); sleep 0.2; xdotool mousemove "$3" "$4"; sleep 0.4
    xdotool mouseup 1
}
close_window() { xdotool windowactivate --sync "$main"; xdotool key alt+F4; within 10 not_running || fail "still running"; wait "$app"; }
not_running() { ! kill -0 "$app"; }

# A window manager without its own use of Alt and the mouse, which drops need.
mkdir -p "$XDG_CONFIG_HOME/openbox"
sed '/<mousebind button="A-/,/<\/mousebind>/d' /etc/xdg/openbox/rc.xml >"$XDG_CONFIG_HOME/openbox/rc.xml"
openbox & sleep 0.5
