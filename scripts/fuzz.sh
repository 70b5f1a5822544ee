#!/usr/bin/env bash
# Builds the fuzz targets with clang (preset "fuzz"), writes their seed corpus and runs
# each target for SECONDS (default 60) on it. New inputs that the fuzzer finds go to
# build/fuzz/corpus/<target>; a crash leaves its input in build/fuzz/crashes.
# Usage: scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
cmake --preset fuzz >/dev/null
nice -n 10 cmake --build --preset fuzz
build=build/fuzz
seeds=$build/seeds
"$build/tests/fuzz/fuzz_seeds" "$seeds"
mkdir -p "$build/crashes"
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
status=0
for target in "$build"/tests/fuzz/fuzz_*; do
    name=${target##*/fuzz_}
    case "$name" in seeds|*_seeds|*_autogen) continue ;; esac
    [ -f "$target" ] && [ -x "$target" ] || continue
    corpus=$build/corpus/$name
    mkdir -p "$corpus"
    echo "== $name: $seconds s"
    if ! "$target" -max_total_time="$seconds" -timeout=5 -rss_limit_mb=1024 -print_final_stats=1 \
        -artifact_prefix="$build/crashes/$name-" "$corpus" "$seeds/$name" 2>"$build/$name.log"; then
        echo "   FAILED: see $build/$name.log and $build/crashes" >&2
        status=1
    fi
    grep -E "^stat::number_of_executed_units|^stat::peak_rss_mb" "$build/$name.log" | sed 's/^/   /' || true
done
exit $status
