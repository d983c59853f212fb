#!/usr/bin/env bash
# Configures and builds Quarry with a preset of CMakePresets.json
# ($QUARRY_PRESET, default release), into the preset's folder or into
# $QUARRY_BUILD_DIR. Further arguments go to cmake.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
preset=${QUARRY_PRESET:-release}

cd "$root"
if [ -n "${QUARRY_BUILD_DIR:-}" ]; then
    cmake --preset "$preset" -B "$QUARRY_BUILD_DIR" "$@"
    cmake --build "$QUARRY_BUILD_DIR" --parallel
else
    cmake --preset "$preset" "$@"
    cmake --build --preset "$preset" --parallel
fi
