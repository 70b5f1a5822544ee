#!/bin/sh
# Builds and runs the model scan and map catalogue benchmarks. The comparison pipeline needs unzip and
# ImageMagick; on Debian they are installed here when missing (root only).
set -eu
cd "$(dirname "$0")/.."
if ! command -v unzip >/dev/null 2>&1 || [ ! -x /usr/bin/convert ]; then
    if [ "$(id -u)" = 0 ]; then
        apt-get update -qq && apt-get install -y -qq unzip imagemagick >/dev/null
    else
        echo "unzip and imagemagick are missing: the pipeline comparison will be skipped" >&2
    fi
fi
cmake --preset bench >/dev/null
cmake --build --preset bench -j2 --target bench_maps bench_bots bench_shots
status=0
./build/bench/bench/bench_maps "$@" || status=1
./build/bench/bench/bench_bots || status=1
./build/bench/bench/bench_shots || status=1
exit $status
