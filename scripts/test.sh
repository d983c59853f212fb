#!/usr/bin/env bash
# Installs the dependencies, checks the layout of the code, builds Quarry and
# its API documentation (a public member without a comment fails it) and runs
# every test: the suite, the same suite built with AddressSanitizer and
# UndefinedBehaviorSanitizer (any report fails it), and short runs of the
# fuzz targets. The database tests start their own MariaDB server on
# 127.0.0.1.
#   scripts/test.sh           all of it, as CI runs it
#   scripts/test.sh --quick   the release build and its suite only
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_BUILD_DIR:-$root/build}
jobs=$(nproc)

quick=false
case "${1:-}" in
    --quick) quick=true ;;
    "") ;;
    *)
        echo "usage: $0 [--quick]" >&2
        exit 2
        ;;
esac

# The test programs each use their own databases and folders, so they run
# side by side.
suite() {
    ctest --test-dir "$1" --output-on-failure --parallel "$jobs" --timeout "$2"
}

if $quick; then
    "$root/scripts/build.sh"
    suite "$build" 600
    exit 0
fi

"$root/scripts/install-deps.sh"
"$root/scripts/check-format.sh"
"$root/scripts/build.sh"
suite "$build" 600

QUARRY_PRESET=sanitize QUARRY_BUILD_DIR=$build-sanitize "$root/scripts/build.sh"
suite "$build-sanitize" 900

QUARRY_FUZZ_BUILD_DIR=$build-sanitize "$root/scripts/fuzz.sh"
echo "test.sh: everything passed in $((SECONDS / 60)) min $((SECONDS % 60)) s"
