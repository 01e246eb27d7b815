#!/bin/sh
# clang-tidy over the toolkit-free code, with the compile commands of the default build; --all
# takes the Qt code as well, --quick leaves out what takes longest: the analyzer that follows paths
# through functions, which needs as long as all the other checks together, and two checks that look
# at every name of the standard library.
set -eu
cd "$(dirname "$0")/.."
rooms="common recordings app library track playback settings update server telemetry extractor xml"
without=""
all=no
for option in "$@"; do
    case $option in
    --all) all=yes ;;
    --quick) without="-clang-analyzer-*,-bugprone-reserved-identifier,-bugprone-stringview-nullptr" ;;
    *)
        echo "usage: tools/check_tidy.sh [--all] [--quick]" >&2
        exit 2
        ;;
    esac
done
# The headers that the other compiler has precompiled mean nothing to this one.
mkdir -p build/tidy
sed -E 's/ -Winvalid-pch -include [^ ]*cmake_pch\.hxx//' build/default/compile_commands.json \
    >build/tidy/compile_commands.json

look_over() { # CHECKS FOLDER...
    local checks=$1
    shift
    find "$@" -name '*.cpp' |
        xargs -P "$(nproc)" -n 6 clang-tidy --quiet "--checks=$checks" -p build/tidy \
            --extra-arg=-Wno-unknown-warning-option 2>&1 |
        grep -vE '^[0-9]+ warnings|^Suppressed|^Use -header-filter|^$' >>build/tidy.log || true
}
: >build/tidy.log
look_over "$without" $rooms
# The path analyzer takes objects that the toolkit's parents own for lost.
[ "$all" = no ] || look_over "-clang-analyzer-*" desktop
if [ -s build/tidy.log ]; then
    head -n 60 build/tidy.log
    exit 1
fi
