#!/bin/sh
# Runs a command on a private Xvfb display with Qt's xcb platform, as on a desktop
# without a window manager, and stops the display afterwards. Xvfb comes with Debian's
# package xvfb, which bench/run.sh installs when it is missing.
# Usage: bench/xvfb.sh COMMAND [ARGUMENTS...]
set -eu
if ! command -v Xvfb >/dev/null 2>&1; then
    echo "Xvfb is not installed (Debian: apt-get install xvfb)" >&2
    exit 2
fi
number=$(mktemp)
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$number" 2>/dev/null &
server=$!
trap 'kill "$server" 2>/dev/null; rm -f "$number"' EXIT INT TERM
tries=0
while [ ! -s "$number" ]; do
    tries=$((tries + 1))
    if [ "$tries" -gt 100 ] || ! kill -0 "$server" 2>/dev/null; then
        echo "Xvfb did not start" >&2
        exit 2
    fi
    sleep 0.1
done
status=0
DISPLAY=":$(cat "$number")" QT_QPA_PLATFORM=xcb "$@" || status=$?
exit $status
