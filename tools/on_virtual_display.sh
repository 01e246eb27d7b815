#!/bin/sh
# Runs a command on a virtual display of its own: tools/on_virtual_display.sh WIDTHxHEIGHT COMMAND...
# The display ends with the command, whose exit code is handed on.
set -u
size=$1
shift
number_file=$(mktemp)
Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp 3>"$number_file" 2>/dev/null &
server=$!
trap 'kill $server 2>/dev/null; rm -f "$number_file"' EXIT INT TERM
tries=0
while [ ! -s "$number_file" ]; do
    tries=$((tries + 1))
    if [ $tries -gt 100 ] || ! kill -0 $server 2>/dev/null; then
        echo "The virtual display does not start" >&2
        exit 1
    fi
    sleep 0.1
done
DISPLAY=":$(cat "$number_file")" WAYLAND_DISPLAY="" QT_QPA_PLATFORM=xcb "$@"
