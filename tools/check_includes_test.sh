#!/bin/sh
# The include check must fail for each kind of forbidden include and pass without them.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/recordings" "$scratch/track" "$scratch/ports" "$scratch/telemetry" "$scratch/library"

try() { # expected result, file, include
    printf '#include %s\n' "$3" >"$scratch/$2"
    result=passes
    "$here/check_includes.sh" "$scratch" >/dev/null || result=fails
    rm "$scratch/$2"
    [ "$result" = "$1" ] || {
        echo "$2 with #include $3: the check $result"
        exit 1
    }
}
try passes track/frmSendData.cpp '"ports/Timer.h"'
try passes track/frmSendData.cpp '<vector>'
try passes library/frmMP4List.cpp '"recordings/RecordingList.h"'
try passes recordings/RecordingList.cpp '"common/StepError.h"'
try fails recordings/RecordingList.cpp '"library/frmMP4List.h"'
try fails recordings/RecordingList.cpp '"track/frmSendData.h"'
try fails library/frmMP4List.cpp '"track/frmSendData.h"'
try fails library/frmMP4List.cpp '"telemetry/Reader.h"'
try fails track/frmSendData.cpp '<QString>'
try fails track/frmSendData.cpp '"library/frmMP4List.h"'
try fails track/frmSendData.cpp '"desktop/Application.h"'
try fails track/frmSendData.cpp '"frmSendData.h"'
try fails ports/Timer.h '"track/frmSendData.h"'
try fails telemetry/Reader.cpp '"ports/Timer.h"'
try fails telemetry/Reader.cpp '<mpv/client.h>'
mkdir "$scratch/cellar"
try passes track/clsDot.cpp '<vector>'
try fails cellar/Wine.cpp '<vector>'
