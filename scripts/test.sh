#!/usr/bin/env bash
# Installs what is missing, checks the formatting, builds everything with warnings as errors
# and runs every test; then runs the core's tests and the fuzz seeds once more under the
# sanitizers.
# STEWARD_REAL_SERVER=1 installs Debian's openarena-server as well, so that the test against
# a real Quake 3 engine server runs instead of being skipped.
set -euo pipefail
cd "$(dirname "$0")/.."
extra=()
if [ "${STEWARD_REAL_SERVER:-0}" = 1 ]; then extra+=(openarena-server); fi
scripts/install-deps.sh clang-format "${extra[@]}"
scripts/format.sh --check
cmake --preset ci >/dev/null
cmake --build --preset ci
ctest --preset ci
scripts/asan.sh
