#!/usr/bin/env bash
# Builds the fuzz targets of tests/fuzz in the sanitized tree (clang; the
# tree of `--preset sanitize`, or $QUARRY_FUZZ_BUILD_DIR) and runs each for a
# short time ($QUARRY_FUZZ_SECONDS, default 30) from its seed inputs, as many
# at once as there are cores. New inputs go to a scratch folder, so the seeds
# in the repository stay as they are. A target that finds a failing input
# prints it and fails the run.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUARRY_FUZZ_BUILD_DIR:-$root/build-sanitize}
seconds=${QUARRY_FUZZ_SECONDS:-30}

(cd "$root" && cmake --preset sanitize -B "$build")
targets=()
for seeds in "$root"/tests/fuzz/corpus/*/; do
    targets+=("$(basename "$seeds")")
done
cmake --build "$build" --parallel --target "${targets[@]}"

# One target for each core at a time; each fuzzes on one.
run() {
    local target=$1 scratch log=$build/$1.log
    scratch=$(mktemp -d)
    if (cd "$build" && "$build/tests/fuzz/$target" -max_total_time="$seconds" "$scratch" \
            "$root/tests/fuzz/corpus/$target") >"$log" 2>&1; then
        echo "fuzz: $target: $(grep -Eo 'Done [0-9]+ runs in [0-9]+ second' "$log" | tail -n 1)s"
    else
        echo "fuzz: $target FAILED; the input is in $build (crash-*), the log ends:"
        tail -n 40 "$log"
        touch "$build/$target.failed"
    fi
    rm -rf "$scratch"
}

rm -f "$build"/*.failed
for target in "${targets[@]}"; do
    while [ "$(jobs -rp | wc -l)" -ge "$(nproc)" ]; do
        wait -n
    done
    run "$target" &
done
wait
failed=$(find "$build" -maxdepth 1 -name '*.failed' | wc -l)
echo "fuzz: $((${#targets[@]} - failed)) passed, $failed failed"
[ "$failed" -eq 0 ]
