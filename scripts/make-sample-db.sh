#!/usr/bin/env bash
# Builds the sample station's embedded databases from data/sample/*.sql:
#   scripts/make-sample-db.sh [DIR]     (default: data/sample, beside seal.ini)
# SEAL.db is the seal database (branches, tellers, business date, logs),
# LOCAL.db the local one (parameters); both get the reference code lists.
# Existing files are replaced.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
sql=$root/data/sample
dir=${1:-$sql}

command -v sqlite3 >/dev/null || { echo "sqlite3 is missing: run scripts/install-deps.sh" >&2; exit 1; }
mkdir -p "$dir"

build() {
    local target=$1; shift
    local tmp=$target.tmp
    rm -f "$tmp"
    if ! cat "$@" | sqlite3 -bail "$tmp"; then
        rm -f "$tmp"
        exit 1
    fi
    mv -f "$tmp" "$target"
}

build "$dir/SEAL.db" "$sql/seal.sql" "$sql/reference.sql"
build "$dir/LOCAL.db" "$sql/local.sql" "$sql/reference.sql"
echo "Sample databases written to $dir"
