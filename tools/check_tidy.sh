#!/bin/sh
# clang-tidy over the toolkit-free code, with the compile commands of the default build; --all
# takes the Qt code as well.
set -eu
cd "$(dirname "$0")/.."
rooms="common app library track playback settings update server telemetry extractor xml"
[ "${1:-}" != --all ] || rooms="$rooms desktop"
find $rooms -name '*.cpp' 2>/dev/null |
    xargs -P "$(nproc)" -n 6 clang-tidy --quiet -p build/default \
            --extra-arg=-Wno-unknown-warning-option 2>&1 |
    grep -vE '^[0-9]+ warnings|^Suppressed|^Use -header-filter|^$' >build/tidy.log || true
if [ -s build/tidy.log ]; then
    head -n 60 build/tidy.log
    exit 1
fi
