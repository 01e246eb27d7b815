#!/bin/sh
# Lists the project's own source files with one of the given extensions, in every folder but those
# of builds and of what others wrote.
# Usage: tools/sources.sh EXTENSION...
set -eu
cd "$(dirname "$0")/.."
names=""
for extension in "$@"; do
    names="$names${names:+ -o }-name *.$extension"
done
set -f
# shellcheck disable=SC2086 # the names are split on purpose
find . \( -path ./build -o -name '.[!.]*' -o -name vendor -o -name node_modules \) -prune -o \
    -type f \( $names \) -print | sed 's,^\./,,' | LC_ALL=C sort
