#!/usr/bin/env bash
# Installs the dependencies, checks the layout of the code, builds Quarry and
# its API documentation (a public member without a comment fails it) and runs
# every test: the suite, the same suite built with AddressSanitizer and
# UndefinedBehaviorSanitizer (any report fails it), and short runs of the
# fuzz targets. The database tests start their own MariaDB server on
# 127.0.0.1.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_BUILD_DIR:-$root/build}

"$root/scripts/install-deps.sh"
"$root/scripts/check-format.sh"
"$root/scripts/build.sh"
cmake --build "$build" --target docs
ctest --test-dir "$build" --output-on-failure --timeout 600

QUARRY_PRESET=sanitize QUARRY_BUILD_DIR=$build-sanitize "$root/scripts/build.sh"
ctest --test-dir "$build-sanitize" --output-on-failure --timeout 900

QUARRY_FUZZ_BUILD_DIR=$build-fuzz "$root/scripts/fuzz.sh"
