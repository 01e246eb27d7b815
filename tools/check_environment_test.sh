#!/bin/sh
# The check of the environment must fail for each way to change it and pass for reading it.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/app" "$scratch/desktop/map"

try() { # expected result, file, its text
    printf '%s\n' "$3" >"$scratch/$2"
    result=passes
    "$here/check_environment.sh" "$scratch" >/dev/null || result=fails
    rm "$scratch/$2"
    [ "$result" = "$1" ] || {
        echo "$2 with $3: the check $result"
        exit 1
    }
}
try passes app/StartUp.cpp 'const char* home = std::getenv("HOME");'
try passes app/StartUp.cpp 'int length = setenvironmentName(3);'
try passes desktop/map/prepareWebEngine.cpp 'qputenv("A", "1");'
try fails app/StartUp.cpp 'setenv("A", "1", 1);'
try fails app/StartUp.cpp '    ::setenv("A", "1", 1);'
try fails app/StartUp.h 'inline void set() { putenv(text); }'
try fails app/StartUp.cpp 'std::string a; unsetenv ("A");'
try fails desktop/map/WebMapPage.cpp 'qputenv("A", "1");'
try fails desktop/map/WebMapPage.cpp 'qunsetenv("A");'
