#!/usr/bin/env bash
# Installs what is missing, builds everything with warnings as errors and runs every test;
# then runs the core's tests and the fuzz seeds once more under the sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset ci >/dev/null
cmake --build --preset ci
ctest --preset ci
scripts/asan.sh
