#!/usr/bin/env bash
# Takes pictures of every page of the main window and of the server console, offscreen,
# into FOLDER (default: screenshots/). Builds the picture taker of
# tools/screenshots in build/screenshots first.
set -euo pipefail
cd "$(dirname "$0")/.."
folder="${1:-screenshots}"
cmake -S . -B build/screenshots -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSTEWARD_SCREENSHOTS=ON >/dev/null
cmake --build build/screenshots --target steward-screenshots
build/screenshots/tools/screenshots/steward-screenshots "$folder"
