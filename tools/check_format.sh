#!/bin/sh
# Checks the format of every C++ file; with --fix it formats them instead.
set -eu
cd "$(dirname "$0")/.."
files=$(find app common desktop extractor fuzz benchmarks library playback ports recordings resources settings \
    telemetry tests tools track xml \( -name '*.h' -o -name '*.cpp' \) 2>/dev/null)
if [ "${1:-}" = --fix ]; then
    printf '%s\n' "$files" | xargs clang-format -i
    exit 0
fi
if ! printf '%s\n' "$files" | xargs clang-format --dry-run -Werror 2>&1 | grep 'error:'; then
    exit 0
fi
echo "To mend: tools/check_format.sh --fix"
exit 1
