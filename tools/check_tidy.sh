#!/bin/sh
# clang-tidy over the toolkit-free code, with the compile commands of the default build; --all
# takes the Qt code as well, --quick leaves out the analyzer that follows paths through functions,
# which takes as long as all the other checks together.
set -eu
cd "$(dirname "$0")/.."
rooms="common app library track playback settings update server telemetry extractor xml"
checks=""
for option in "$@"; do
    case $option in
    --all) rooms="$rooms desktop" ;;
    --quick) checks="--checks=-clang-analyzer-*" ;;
    *)
        echo "usage: tools/check_tidy.sh [--all] [--quick]" >&2
        exit 2
        ;;
    esac
done
find $rooms -name '*.cpp' 2>/dev/null |
    xargs -P "$(nproc)" -n 6 clang-tidy --quiet $checks -p build/default \
            --extra-arg=-Wno-unknown-warning-option 2>&1 |
    grep -vE '^[0-9]+ warnings|^Suppressed|^Use -header-filter|^$' >build/tidy.log || true
if [ -s build/tidy.log ]; then
    head -n 60 build/tidy.log
    exit 1
fi
