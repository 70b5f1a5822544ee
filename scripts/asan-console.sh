#!/usr/bin/env bash
# Builds the console protocol's tests with AddressSanitizer and UndefinedBehaviorSanitizer
# in build/asan and runs them: the parsers, the fuzz corpus of mutated replies and the
# client against fake servers.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined" \
    -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
cmake --build build/asan --target tests_console
QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 build/asan/tests/tests_console "$@"
