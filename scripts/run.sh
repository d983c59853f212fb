#!/usr/bin/env bash
# Installs the dependencies, builds Quarry, makes the sample databases when
# they are missing and starts quarry-viewer on the sample station.
#   scripts/run.sh                         quarry-viewer on the embedded sample
#   scripts/run.sh --mariadb               quarry-viewer on the sample loaded into
#                                          a throw-away MariaDB server on 127.0.0.1
#                                          (stopped and removed when the viewer ends)
#   scripts/run.sh --check [--json]        quarry-config check on the sample
#                                          station: what is wrong with it
#   scripts/run.sh QUARRY-ASK-ARGUMENTS    quarry-ask instead (e.g. date)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_BUILD_DIR:-$root/build}
sample=$root/data/sample

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    no_display=1
else
    no_display=0
fi

"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
[ -f "$sample/SEAL.db" ] && [ -f "$sample/LOCAL.db" ] || "$root/scripts/make-sample-db.sh" "$sample"

# The sample seal.ini is found through CONVERT.INI in the system INI folder;
# Windows drive paths in it (the error log folder) land under build/drives.
# quarry-viewer reads its log catalogue, logs.ini, beside seal.ini.
export QUARRY_SYSTEM_DIR=$sample
export QUARRY_DRIVES=$build/drives
# Its error log folder (C:\corvane\errorpath) is there before the first
# fault, as on a station: the component makes only the last level of it.
mkdir -p "$QUARRY_DRIVES/c/corvane/errorpath"

if [ "${1:-}" = --check ]; then
    shift
    exec "$build/apps/quarry-config/quarry-config" check "$@"
fi

if [ "$no_display" = 1 ]; then
    cat >&2 <<MSG
No display: quarry-viewer and the query dialogs need one.
Built and ready; to run them on a virtual display (package xvfb):
    xvfb-run -a -s "-screen 0 1280x800x24" bash scripts/run.sh $*
or on a desktop, or under ssh -X, run scripts/run.sh again there.
MSG
    exit 1
fi

# The sample station on MariaDB: the same seal.ini, catalogue and rows, with
# BASEMODE=MYSQL and the server's address, in build/mariadb-station.
server=$build/mariadb-run
run_on_mariadb() {
    local station=$build/mariadb-station port db
    "$root/scripts/mariadb-test-server.sh" start "$server"
    trap '"$root/scripts/mariadb-test-server.sh" stop "$server"' EXIT
    [ -f "$server/port" ] || { echo "No MariaDB server: install mariadb-server" >&2; exit 1; }
    port=$(cat "$server/port")
    for db in SEAL LOCAL; do
        mariadb --no-defaults --protocol=socket --socket="$(cat "$server/socket")" --user=root \
            -e "CREATE DATABASE $db CHARACTER SET utf8mb4 COLLATE utf8mb4_general_ci"
    done
    load() {
        local db=$1; shift
        cat "$@" | mariadb --no-defaults --protocol=socket --socket="$(cat "$server/socket")" \
            --user=root --default-character-set=utf8mb4 "$db"
    }
    load SEAL "$sample/seal.sql" "$sample/reference.sql"
    load LOCAL "$sample/local.sql" "$sample/reference.sql"

    rm -rf "$station"
    mkdir -p "$station"
    cp "$sample/CONVERT.INI" "$sample/logs.ini" "$station/"
    sed -e 's/^BASEMODE=ACCESS/BASEMODE=MYSQL/' -e "s/^SERVER=SealServer/SERVER=127.0.0.1:$port/" \
        "$sample/seal.ini" >"$station/seal.ini"
    export QUARRY_SYSTEM_DIR=$station
    echo "Sample station on MariaDB 127.0.0.1:$port (databases SEAL and LOCAL, login BISOL)"
    "$build/apps/quarry-viewer/quarry-viewer"
}

if [ $# -eq 0 ]; then
    exec "$build/apps/quarry-viewer/quarry-viewer"
fi
if [ "$1" = --mariadb ] && [ $# -eq 1 ]; then
    run_on_mariadb
    exit
fi
exec "$build/apps/quarry-ask/quarry-ask" "$@"
