#!/usr/bin/env bash
# Installs what is missing, builds Arena Steward for release and makes its Debian package,
# build/package/arena-steward_<version>_<arch>.deb. Install it with
#   sudo apt install ./build/package/arena-steward_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset package >/dev/null
cmake --build --preset package
(cd build/package && cpack -G DEB)
ls build/package/arena-steward_*.deb
