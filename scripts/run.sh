#!/usr/bin/env bash
# Installs the dependencies, builds Quarry, makes the sample databases when
# they are missing and runs quarry-ask on the sample configuration.
#   scripts/run.sh [quarry-ask arguments]      (default: date)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_BUILD_DIR:-$root/build}
sample=$root/data/sample

"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
[ -f "$sample/SEAL.db" ] && [ -f "$sample/LOCAL.db" ] || "$root/scripts/make-sample-db.sh" "$sample"

# The sample seal.ini is found through CONVERT.INI in the system INI folder;
# Windows drive paths in it (the error log folder) land under build/drives.
export QUARRY_SYSTEM_DIR=$sample
export QUARRY_DRIVES=$build/drives

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "No display: showing the sample configuration instead of a dialog." >&2
    echo "(On a desktop this opens the dialog; under ssh try: xvfb-run scripts/run.sh)" >&2
    exec "$build/apps/quarry-config/quarry-config" dump
fi
exec "$build/apps/quarry-ask/quarry-ask" "${@:-date}"
