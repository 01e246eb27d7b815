#!/bin/sh
# The environment is changed in one place, before the first thread begins: other threads read it
# without a lock. Prints every other change and ends with 1, or prints nothing and ends with 0.
# Usage: tools/check_environment.sh [folder of the sources]
set -eu
cd "${1:-$(dirname "$0")/..}"
found=$(find . -path ./build -prune -o -path ./tests -prune -o -path ./benchmarks -prune \
    -o -path ./tools -prune -o \( -name '*.h' -o -name '*.cpp' \) ! -name prepareWebEngine.cpp \
    -exec grep -HnE '(^|[^A-Za-z_])(setenv|putenv|unsetenv|clearenv|qputenv|qunsetenv)[[:space:]]*\(' {} + || :)
[ -z "$found" ] || {
    printf '%s\n' "$found"
    exit 1
}
