#!/usr/bin/env bash
# Installs what is missing, builds the library and the program it starts,
# makes the sample databases when they are missing and starts quarry-viewer
# on the sample station.
#   scripts/run.sh                         quarry-viewer on the embedded sample
#   scripts/run.sh --mariadb               quarry-viewer on the sample loaded into
#                                          a throw-away MariaDB server on 127.0.0.1
#                                          (stopped and removed when the viewer ends)
#   scripts/run.sh --check [--json]        quarry-config check on the sample
#                                          station: what is wrong with it
#   scripts/run.sh QUARRY-ASK-ARGUMENTS    quarry-ask instead (e.g. date)
# Standard output is the program's alone, so that quarry-ask's condition can
# be piped: the build's output goes to build/run.log, and what the script
# has to say to standard error. scripts/test.sh builds the rest.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_BUILD_DIR:-$root/build}
sample=$root/data/sample
log=$build/run.log

if [ $# -eq 0 ] || { [ "$1" = --mariadb ] && [ $# -eq 1 ]; }; then
    program=quarry-viewer
elif [ "$1" = --check ]; then
    program=quarry-config
else
    program=quarry-ask
fi

"$root/scripts/install-deps.sh"

mkdir -p "$build"
plan=$(cmake --build "$build" --target quarry "$program" -- -n 2>/dev/null || true)
[[ $plan == *"no work to do"* ]] ||
    echo "run.sh: building $program and the library (log: $log)" >&2
build_program() {
    [ -f "$build/build.ninja" ] || cmake --preset release -B "$build"
    cmake --build "$build" --target quarry "$program"
    [ -f "$sample/SEAL.db" ] && [ -f "$sample/LOCAL.db" ] || "$root/scripts/make-sample-db.sh" "$sample"
}
if ! build_program >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    echo "run.sh: the build failed; all of its output is in $log" >&2
    exit 1
fi

# The sample seal.ini is found through CONVERT.INI in the system INI folder;
# Windows drive paths in it (the error log folder) land under build/drives.
# quarry-viewer reads its log catalogue, logs.ini, beside seal.ini.
export QUARRY_SYSTEM_DIR=$sample
export QUARRY_DRIVES=$build/drives
# Its error log folder (C:\corvane\errorpath) is there before the first
# fault, as on a station: the component makes only the last level of it.
mkdir -p "$QUARRY_DRIVES/c/corvane/errorpath"

if [ "$program" = quarry-config ]; then
    shift
    exec "$build/apps/quarry-config/quarry-config" check "$@"
fi

# Qt wants a private runtime folder, which a login provides; ssh without a
# session, su and containers do not.
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    export XDG_RUNTIME_DIR=$build/runtime
    mkdir -p "$XDG_RUNTIME_DIR"
    chmod 700 "$XDG_RUNTIME_DIR"
fi

# The arguments as they are typed again in a shell, each after a blank.
shell_words() {
    local word
    for word; do
        case $word in
        *[!A-Za-z0-9_./=:,+@%-]* | "") printf " '%s'" "${word//\'/\'\\\'\'}" ;;
        *) printf ' %s' "$word" ;;
        esac
    done
}

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    cat >&2 <<MSG
No display: quarry-viewer and the query dialogs need one.
Built and ready; to run them on a virtual display (package xvfb):
    xvfb-run -a bash scripts/run.sh$(shell_words "$@")
or on a desktop, or under ssh -X, run scripts/run.sh again there.
MSG
    exit 1
fi

# The sample station on MariaDB: the same seal.ini, catalogue and rows, with
# BASEMODE=MYSQL and the server's address, in build/mariadb-station.
server=$build/mariadb-run
run_on_mariadb() {
    local station=$build/mariadb-station port db
    "$root/scripts/mariadb-test-server.sh" start "$server" >>"$log" 2>&1
    trap '"$root/scripts/mariadb-test-server.sh" stop "$server" >>"$log" 2>&1' EXIT
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
    echo "Sample station on MariaDB 127.0.0.1:$port (databases SEAL and LOCAL, login BISOL)" >&2
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
