#!/bin/bash
# Clones this repository into a clean Debian 12 (base packages only) and runs a command of the
# README there: tools/clean_system_test.sh ./run.sh   or   tools/clean_system_test.sh ./test.sh
# Needs root and mmdebstrap. Prints how long it took; the root folder is removed at the end unless
# KEEP_ROOT is set. Pictures of ./run.sh are copied to build/clean-system-pictures.
set -eu
cd "$(dirname "$0")/.."
repository=$PWD
. tools/clean_root.sh
trap remove_clean_root EXIT
make_clean_root ca-certificates,git
root=$clean_root

git clone -q "$repository" "$root/root/velmorant"
git -C "$root/root/velmorant" log --oneline -n 1
start=$(date +%s)
code=0
in_clean_root /bin/sh -c "cd /root/velmorant && $*" || code=$?
echo "'$*' in a clean Debian 12 ended with $code after $(($(date +%s) - start)) s"
if [ -d "$root/root/velmorant/build/pictures" ]; then
    rm -rf build/clean-system-pictures
    mkdir -p build
    cp -r "$root/root/velmorant/build/pictures" build/clean-system-pictures
fi
exit $code
