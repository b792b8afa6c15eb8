#!/bin/bash
# with-postgres.sh COMMAND ...: runs the command beside a private PostgreSQL server on loopback that nobody else
# uses, and removes the server afterwards. The command finds it in VORNA_TEST_PG ("host;port;database;user"), and all
# of several around each other in VORNA_TEST_PGS. VORNA_FSYNC=on has it wait for the disk, VORNA_POSTGRES names the
# folder of the programs of another version.
set -euo pipefail

bin=${VORNA_POSTGRES:-/usr/lib/postgresql/15/bin}
data=$(mktemp -d /tmp/vorna-pg.XXXXXX)

# The server refuses to run as root.
as_user=()
if [ "$(id -u)" -eq 0 ]; then
    chown postgres "$data"
    as_user=(runuser -u postgres --)
fi

stop_server() {
    (cd / && "${as_user[@]}" "$bin/pg_ctl" -D "$data/db" -m immediate -w stop >/dev/null 2>&1) || true
    rm -rf "$data"
}
trap stop_server EXIT

started_in=$PWD
cd /
"${as_user[@]}" "$bin/initdb" -D "$data/db" -U vorna -A trust -E UTF8 --locale=C.UTF-8 --no-sync >/dev/null
port=
for _ in 1 2 3 4 5 6 7 8; do
    candidate=$((20000 + RANDOM % 12000))
    if "${as_user[@]}" "$bin/pg_ctl" -D "$data/db" -w -l "$data/db/log" \
        -o "-p $candidate -c listen_addresses=127.0.0.1 -c unix_socket_directories=$data -c fsync=${VORNA_FSYNC:-off}" \
        start >/dev/null 2>&1; then
        port=$candidate
        break
    fi
done
[ -n "$port" ] || { echo "The test server did not start." >&2; exit 1; }
"${as_user[@]}" createdb -h 127.0.0.1 -p "$port" -U vorna vorna_test
cd "$started_in"

status=0
server="127.0.0.1;$port;vorna_test;vorna"
VORNA_TEST_PG=$server VORNA_TEST_PGS="${VORNA_TEST_PGS:-} $server" "$@" || status=$?
exit $status
