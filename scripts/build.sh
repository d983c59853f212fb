#!/usr/bin/env bash
# Configures and builds Quarry into build/ (or $QUARRY_BUILD_DIR).
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_BUILD_DIR:-$root/build}

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUARRY_WERROR=ON "$@"
cmake --build "$build" --parallel
