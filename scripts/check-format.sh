#!/usr/bin/env bash
# Fails when a C++ file is not laid out as .clang-format says (the tests'
# tables are exempt: see tests/.clang-format). Reformat with:
#   git ls-files '*.cpp' '*.h' | xargs clang-format -i
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
git ls-files -z -- '*.cpp' '*.h' | xargs -0 clang-format --dry-run --Werror
echo "format: every file as .clang-format lays it out"
