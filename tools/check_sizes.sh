#!/bin/sh
# Names every source file longer than 400 lines that gives no reason: a comment "Long because ..."
# among its first 30 lines.
set -eu
cd "$(dirname "$0")/.."
status=0
for file in $(tools/sources.sh h cpp js sh py); do
    lines=$(wc -l <"$file")
    if [ "$lines" -gt 400 ] && ! head -n 30 "$file" | grep -q 'Long because'; then
        echo "$file: $lines lines and no reason given"
        status=1
    fi
done
exit $status
