#!/usr/bin/env bash
# Installs the dependencies, builds Quarry and runs every test. The database
# tests start their own MariaDB server on 127.0.0.1.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_BUILD_DIR:-$root/build}

"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
ctest --test-dir "$build" --output-on-failure --timeout 600
