#!/usr/bin/env bash
# Builds the core's test programs and the fuzz seed runners with the address and
# undefined behaviour sanitizers (preset "asan") and runs each program once, in one
# process. The window tests (tests_ui) are left to the regular run.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset asan >/dev/null
build=build/asan
# Every test program but the windows', and every fuzz target's seed runner.
targets=$(ninja -C "$build" -t targets | grep -oE '^(tests_[a-z]+|fuzz_[a-z_]+_seeds): phony' | cut -d: -f1 |
          grep -v '^tests_ui$' | sort -u)
core_tests=$(printf '%s\n' $targets | grep '^tests_' || true)
fuzz_runners=$(printf '%s\n' $targets | grep '^fuzz_' || true)
cmake --build --preset asan --target fuzz_seeds $targets
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/scripts/lsan.supp:print_suppressions=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
for test in $core_tests; do
    echo "== $test (asan)"
    "$build/tests/$test" --gtest_brief=1
done
"$build/tests/fuzz/fuzz_seeds" "$build/seeds"
for runner in $fuzz_runners; do
    name=${runner#fuzz_}
    name=${name%_seeds}
    echo "== fuzz_$name seeds (asan)"
    "$build/tests/fuzz/$runner" "$build/seeds/$name"
done
