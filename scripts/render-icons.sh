#!/usr/bin/env bash
# Renders the program's PNG icons from its SVG. The PNGs are committed; run this after
# editing the SVG. Needs rsvg-convert (Debian's librsvg2-bin).
set -euo pipefail
cd "$(dirname "$0")/../resources/icons"
name=io.github.arena_steward.ArenaSteward
if ! command -v rsvg-convert >/dev/null; then
    echo "rsvg-convert is missing: apt-get install librsvg2-bin" >&2
    exit 1
fi
for size in 48 128 256; do
    mkdir -p "${size}x${size}"
    rsvg-convert -w "$size" -h "$size" "$name.svg" -o "${size}x${size}/$name.png"
done
