#!/usr/bin/env bash
# Installs what is missing, builds Arena Steward and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh xdg-utils
cmake --preset default >/dev/null
cmake --build --preset default --target arena-steward
exec build/default/arena-steward "$@"
