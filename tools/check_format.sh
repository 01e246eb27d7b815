#!/bin/sh
# Checks the format of every C++ file; with --fix it formats them instead.
set -eu
cd "$(dirname "$0")/.."
files=$(tools/sources.sh h cpp)
if [ "${1:-}" = --fix ]; then
    printf '%s\n' "$files" | xargs clang-format -i
    exit 0
fi
if ! printf '%s\n' "$files" | xargs clang-format --dry-run -Werror 2>&1 | grep 'error:'; then
    exit 0
fi
echo "To mend: tools/check_format.sh --fix"
exit 1
