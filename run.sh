#!/bin/sh
# Builds Velmorant DVR Tools on a fresh Debian 12 machine and starts it with a card in its list.
#   ./run.sh               with a sample card, made on the spot
#   ./run.sh --card DIR    with your own card (a folder with recordings, sub-folders included)
#   ./run.sh --no-start    builds and prepares all, starts nothing
# Without a display it starts the program on a virtual one, drives the main road by itself and
# leaves pictures of the window in a folder that it names.
set -eu
cd "$(dirname "$0")"

card=""
start=yes
while [ $# -gt 0 ]; do
    case "$1" in
    --card)
        [ $# -ge 2 ] || { echo "--card needs a folder" >&2; exit 2; }
        card=$2
        shift
        ;;
    --no-start) start=no ;;
    *)
        sed -n '2,8s/^# \{0,1\}//p' "$0"
        exit 2
        ;;
    esac
    shift
done

tools/packages.sh run
cmake --preset program >/dev/null
cmake --build --preset program

program="$PWD/build/program/program"
"$program/velmorant-setup"

if [ -z "$card" ]; then
    card="$PWD/build/sample-card"
    if [ ! -e "$card/complete" ]; then
        rm -rf "$card"
        echo "Making a sample card in $card"
        build/program/tools/make_card "$card"
        : >"$card/complete"
    fi
fi
"$program/velmorant-list" "$card"
[ "$start" = yes ] || exit 0

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    cd "$program"
    exec "./Velmorant DVR Tools"
fi

pictures="$PWD/build/pictures"
echo "No display: driving the main road on a virtual one."
tools/on_virtual_display.sh 1024x708 build/program/tools/drive_road "$program" "$pictures"
echo "Pictures of the window are in $pictures"
