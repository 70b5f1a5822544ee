#!/usr/bin/env bash
# Installs the Debian packages that Arena Steward needs to build, run and test,
# but only those that are missing. Usage: install-deps.sh [extra-package ...]
set -euo pipefail
needed=(cmake ninja-build g++ pkg-config qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins
        qt6-image-formats-plugins libzip-dev zlib1g-dev libgtest-dev
        desktop-file-utils appstream dpkg-dev file systemd "$@")
missing=()
for p in "${needed[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi
echo "Installing missing packages: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
"${sudo_cmd[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
