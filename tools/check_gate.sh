#!/bin/sh
# Nothing of the desktop calls the logic but through the gate. Widgets and components take a
# GatedListener, which the compiler holds them to; this finds the ways that the compiler allows.
# Prints every offending line and ends with 1, or prints nothing and ends with 0.
# Usage: tools/check_gate.sh [folder of the sources]
set -eu
cd "${1:-$(dirname "$0")/..}"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

complain() { # reason; offending lines on the standard input
    sed "s|\$|   ($1)|" >>"$scratch/found"
}

# The wiring hears of things by GatedListener alone. SkinView::loaded is no event from outside: the
# logic itself loads a skin, and waits for what follows from it.
find desktop/wiring desktop/main.cpp \( -name '*.h' -o -name '*.cpp' \) 2>/dev/null |
    xargs -r awk '
        function bad() { print FILENAME ":" FNR ":" $0 }
        /^[[:space:]]*\/\// { next }
        # The signal may stand on the line after the call.
        pending { if ($0 !~ /&SkinView::loaded/) print pending; pending = "" }
        /(^|[^A-Za-z_])connect\(/ {
            if ($0 ~ /&SkinView::loaded/) next
            if ($0 ~ /connect\($/) { pending = FILENAME ":" FNR ":" $0; next }
            bad(); next
        }
        /installEventFilter|eventFilter|invokeMethod|singleShot|callOnTimeout|addAction|QShortcut|QSocketNotifier|[a-z]Event\([^)]*\) override/ { bad() }
    ' | complain "the wiring passes the gate by"

# No widget or component offers a place for a plain listener. Those that are listed keep one that
# comes through a port, which they themselves take through the gate, or that never leaves them.
plain='
desktop/map/MapPageSource.h
desktop/map/TileCache.h
desktop/map/WebEngineBrowser.h
desktop/system/QtTimer.h
desktop/transfer/CurlHttpTransfer.h
desktop/transfer/CurlLoop.h
desktop/widgets/ExtractionProgress.h
desktop/widgets/GatedMenu.h
desktop/widgets/SkinDocument.h
desktop/windows/FirstPainting.h
'
for folder in chart map player system transfer widgets windows; do
    [ -d "desktop/$folder" ] || continue
    for header in $(grep -lE 'function<void\(' -r --include='*.h' "desktop/$folder" || :); do
        case $plain in
        *"
$header
"*) continue ;;
        esac
        grep -HnE 'function<void\(' "$header" | complain "a listener that is no GatedListener"
    done
done

# Only the wiring knows the rooms; from the other folders there is no way to them at all, but for
# what a room declares for the desktop to be.
for folder in chart gate map player system transfer widgets windows; do
    [ -d "desktop/$folder" ] || continue
    { grep -HnE '#include "(app|library|playback|settings|track)/' -r "desktop/$folder" || :; } |
        { grep -vE '"(settings/UpdateProgress|playback/FrameSaver)\.h"' || :; } |
        complain "only the wiring knows the rooms"
done
cat "$scratch/found"
[ ! -s "$scratch/found" ]
