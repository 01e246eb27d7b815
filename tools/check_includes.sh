#!/bin/sh
# The arrows between the rooms: which room may include which. Prints every include that breaks a
# rule, every folder of sources without one and, in the project itself, every rule that nothing
# needs; ends with 1 then, or prints nothing and ends with 0.
# Usage: tools/check_includes.sh [folder of the sources]
set -eu
whole=${1:-yes}
cd "${1:-$(dirname "$0")/..}"

# room: the rooms whose headers it may include. "qt" stands for Qt, libmpv and QCustomPlot, "os" for
# the system's own file interface, "openssl" for its libcrypto, "json" for the JSON library; the standard library is open to all.
# What tests, measures and drives the rooms may include any.
rules='
common: common os
ports: ports
telemetry: telemetry os
extractor: extractor telemetry common os
recordings: recordings ports common
track: track recordings ports common json
library: library recordings ports common
playback: playback recordings ports common
app: app ports common resources os
update: update ports common os openssl
settings: settings update ports common
xml: xml ports common expat
server: server update common os
desktop: desktop update app recordings library track playback settings ports common xml telemetry qt os
resources: resources common
'
free="tests fuzz benchmarks tools"

status=0
complain() {
    echo "$1"
    status=1
}

# kind of what is included, and the line: "ports track/clsDot.h:3:#include ..."
includes_of() {
    find "$1" \( -name '*.h' -o -name '*.cpp' \) -exec \
        grep -HnE '^[[:space:]]*#[[:space:]]*include' {} + | awk '
        {
            line = $0
            sub(/^.*include[[:space:]]*/, "", line)
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
            } else if (line ~ /^<nlohmann\/json/) {
                kind = "json"
            } else if (line ~ /^<openssl\//) {
                kind = "openssl"
            } else if (line ~ /^<(c?[a-z_0-9]+)>/) {
                next
            } else {
                kind = "os"
            }
            print kind, $0
        }'
}

rooms=$(printf '%s' "$rules" | sed -n 's/:.*//p')
for folder in */; do
    folder=${folder%/}
    case " $(echo $rooms) $free build " in
    *" $folder "*) continue ;;
    esac
    [ -z "$(find "$folder" \( -name '*.h' -o -name '*.cpp' \) -print -quit)" ] ||
        complain "$folder: holds sources, and no rule says what it may include"
done
for room in $rooms; do
    if [ ! -d "$room" ]; then
        [ "$whole" != yes ] || complain "$room: a rule for a room that does not exist"
        continue
    fi
    allowed=$(printf '%s' "$rules" | sed -n "s/^$room: //p")
    found=$(includes_of "$room")
    broken=$(printf '%s\n' "$found" | awk -v allowed=" $allowed " -v room="$room" '
        NF > 0 && index(allowed, " " $1 " ") == 0 {
            kind = $1
            sub(/^[^ ]* /, "")
            print $0 "   (" room " may not include " kind ")"
        }')
    [ -z "$broken" ] || complain "$broken"
    [ "$whole" = yes ] || continue
    for kind in $allowed; do
        [ "$kind" = "$room" ] || printf '%s\n' "$found" | grep -q "^$kind " ||
            complain "$room: may include $kind and does not"
    done
done
exit $status
