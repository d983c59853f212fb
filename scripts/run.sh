#!/usr/bin/env bash
# Installs the dependencies, builds Quarry, makes the sample databases when
# they are missing and starts quarry-viewer on the sample station.
#   scripts/run.sh                         quarry-viewer
#   scripts/run.sh QUARRY-ASK-ARGUMENTS    quarry-ask instead (e.g. date)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_BUILD_DIR:-$root/build}
sample=$root/data/sample

"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
[ -f "$sample/SEAL.db" ] && [ -f "$sample/LOCAL.db" ] || "$root/scripts/make-sample-db.sh" "$sample"

# The sample seal.ini is found through CONVERT.INI in the system INI folder;
# Windows drive paths in it (the error log folder) land under build/drives.
# quarry-viewer reads its log catalogue, logs.ini, beside seal.ini.
export QUARRY_SYSTEM_DIR=$sample
export QUARRY_DRIVES=$build/drives

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    cat >&2 <<MSG
No display: quarry-viewer and the query dialogs need one.
Built and ready; to run them on a virtual display (package xvfb):
    xvfb-run -a -s "-screen 0 1280x800x24" bash scripts/run.sh $*
or on a desktop, or under ssh -X, run scripts/run.sh again there.
MSG
    exit 1
fi
if [ $# -eq 0 ]; then
    exec "$build/apps/quarry-viewer/quarry-viewer"
fi
exec "$build/apps/quarry-ask/quarry-ask" "$@"
