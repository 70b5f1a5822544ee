#!/bin/sh
# Builds and runs the map catalogue, model scan and level shot benchmarks, and the map
# scan on the program's windows on a private Xvfb display (bench/xvfb.sh). The map
# benchmarks' peer needs Debian's /usr/bin/python3 with Pillow (python3-pil), the window
# benchmark Xvfb (xvfb); the optional pipeline footnote (--pipeline) needs unzip and
# ImageMagick. On Debian they are installed here when missing (root only).
# Usage: bench/run.sh [bench_maps options: --archives N --large N --rounds N --large-rounds N --pipeline]
set -eu
cd "$(dirname "$0")/.."
install() {
    if [ "$(id -u)" = 0 ]; then
        apt-get update -qq && apt-get install -y -qq "$@" >/dev/null
    else
        echo "$* missing and not root: install them with apt-get" >&2
    fi
}
if ! /usr/bin/python3 -c 'import PIL.Image' >/dev/null 2>&1; then
    install python3-pil
fi
if ! command -v Xvfb >/dev/null 2>&1; then
    install xvfb
fi
case " $* " in
*" --pipeline "*)
    if ! command -v unzip >/dev/null 2>&1 || [ ! -x /usr/bin/convert ]; then
        install unzip imagemagick
    fi
    ;;
esac
cmake --preset bench >/dev/null
cmake --build --preset bench -j2 --target bench_maps bench_bots bench_shots bench_window arena-stewardctl
status=0
./build/bench/bench/bench_maps "$@" || status=1
./build/bench/bench/bench_bots || status=1
./build/bench/bench/bench_shots || status=1
bench/xvfb.sh ./build/bench/bench/bench_window || status=1
# The watcher's costs (Debian's openarena-server for the crash road when it is installed).
/usr/bin/python3 bench/watch.py ./build/bench/arena-stewardctl || status=1
exit $status
