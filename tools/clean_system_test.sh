#!/bin/bash
# Clones this repository into a clean Debian 12 (base packages only) and runs a command of the
# README there: tools/clean_system_test.sh ./run.sh   or   tools/clean_system_test.sh ./test.sh
# Needs root and mmdebstrap. Prints how long it took; the root folder is removed at the end unless
# KEEP_ROOT is set. Pictures of ./run.sh are copied to build/clean-system-pictures.
set -eu
cd "$(dirname "$0")/.."
repository=$PWD
[ "$(id -u)" -eq 0 ] || { echo "needs root" >&2; exit 1; }

root=$(mktemp -d /var/tmp/clean-system.XXXXXX)
mounted=()
clean_up() {
    local i
    for ((i = ${#mounted[@]} - 1; i >= 0; i--)); do umount -l "${mounted[i]}" || true; done
    [ -n "${KEEP_ROOT:-}" ] || rm -rf --one-file-system "$root"
}
trap clean_up EXIT

mmdebstrap --quiet --variant=minbase --include=ca-certificates,git bookworm "$root"
for place in proc sys dev dev/pts dev/shm; do
    mkdir -p "$root/$place"
    case $place in
    proc) mount -t proc proc "$root/$place" ;;
    dev/shm) mount -t tmpfs shm "$root/$place" ;;
    *) mount --bind "/$place" "$root/$place" ;;
    esac
    mounted+=("$root/$place")
done
cp /etc/resolv.conf "$root/etc/resolv.conf"
cp /etc/hosts "$root/etc/hosts"

git clone -q "$repository" "$root/root/velmorant"
git -C "$root/root/velmorant" log --oneline -n 1
start=$(date +%s)
code=0
env -i HOME=/root TERM=dumb LANG=C.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin \
    chroot "$root" /bin/sh -c "cd /root/velmorant && $*" || code=$?
echo "'$*' in a clean Debian 12 ended with $code after $(($(date +%s) - start)) s"
if [ -d "$root/root/velmorant/build/pictures" ]; then
    rm -rf build/clean-system-pictures
    mkdir -p build
    cp -r "$root/root/velmorant/build/pictures" build/clean-system-pictures
fi
exit $code
