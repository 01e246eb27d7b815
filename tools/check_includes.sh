#!/bin/sh
# The arrows between the rooms: which room may include which. Prints every include that breaks a
# rule and ends with 1, or prints nothing and ends with 0.
# Usage: tools/check_includes.sh [folder of the sources]
set -eu
cd "${1:-$(dirname "$0")/..}"

# room: the rooms whose headers it may include. "qt" stands for Qt, libmpv and QCustomPlot, "os" for
# the system's own file interface, "openssl" for its libcrypto; the standard library is open to all.
rules='
common: common
ports: ports common
telemetry: telemetry os
extractor: extractor telemetry os
recordings: recordings ports common
track: track recordings ports common
library: library recordings ports common
playback: playback recordings ports common
app: app ports common resources os
update: update ports common os openssl
settings: settings update ports common
xml: xml ports common expat
server: server update ports common os
desktop: desktop update app recordings library track playback settings ports common resources xml telemetry qt os expat
resources: resources common
'

status=0
for room in $(printf '%s' "$rules" | sed -n 's/:.*//p'); do
    [ -d "$room" ] || continue
    allowed=" $(printf '%s' "$rules" | sed -n "s/^$room: //p") "
    found=$(find "$room" \( -name '*.h' -o -name '*.cpp' \) -exec \
        grep -HnE '^[[:space:]]*#[[:space:]]*include' {} + | awk -v allowed="$allowed" -v room="$room" '
        {
            line = $0
            sub(/^.*include[[:space:]]*/, "", line)
            kind = ""
            if (line ~ /^"/) {
                path = line
                sub(/^"/, "", path)
                sub(/".*/, "", path)
                if (path ~ /\.moc$/) next
                kind = path
                if (sub(/\/.*/, "", kind) == 0) kind = "unrooted"
            } else if (line ~ /^<(Q|mpv\/|qcustomplot)/) {
                kind = "qt"
            } else if (line ~ /^<expat/) {
                kind = "expat"
            } else if (line ~ /^<openssl\//) {
                kind = "openssl"
            } else if (line ~ /^<(c?[a-z_0-9]+)>/) {
                next
            } else {
                kind = "os"
            }
            if (index(allowed, " " kind " ") == 0) print $0 "   (" room " may not include " kind ")"
        }')
    if [ -n "$found" ]; then
        printf '%s\n' "$found"
        status=1
    fi
done
exit $status
