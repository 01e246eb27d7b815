# Functions around a clean Debian 12 in a folder, for the scripts that try something there; read in
# with ".". They need root and mmdebstrap. KEEP_ROOT keeps the folder.
clean_root=""
clean_root_mounts=()
clean_root_holder=""

make_clean_root() { # PACKAGES, separated by commas
    [ "$(id -u)" -eq 0 ] || { echo "needs root" >&2; return 1; }
    clean_root=$(mktemp -d /var/tmp/clean-system.XXXXXX)
    chmod 755 "$clean_root"
    mmdebstrap --quiet --variant=minbase --include="$1" bookworm "$clean_root" || return 1
    local place
    for place in proc sys dev dev/pts dev/shm; do
        mkdir -p "$clean_root/$place"
        case $place in
        proc) mount -t proc proc "$clean_root/$place" ;;
        dev/shm) mount -t tmpfs shm "$clean_root/$place" ;;
        *) mount --bind "/$place" "$clean_root/$place" ;;
        esac || return 1
        clean_root_mounts+=("$clean_root/$place")
    done
    cp /etc/resolv.conf "$clean_root/etc/resolv.conf"
    cp /etc/hosts "$clean_root/etc/hosts"
}

# Shows a folder of this machine under the same name in there.
share_with_clean_root() { # FOLDER
    mkdir -p "$clean_root$1"
    mount --bind "$1" "$clean_root$1" || return 1
    clean_root_mounts+=("$clean_root$1")
}

in_clean_root() { # COMMAND...
    env -i HOME=/root TERM=dumb LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        PATH=/usr/sbin:/usr/bin:/sbin:/bin chroot "$clean_root" "$@"
}

# Keeps a mount namespace whose "/" is the clean root, for use_as_machine: inside a mere chroot no
# program may make the user namespaces that the browser's sandbox stands on.
open_as_machine() {
    unshare --mount --propagation private sh -c '
        mount --rbind "$1" "$1" && cd "$1" && mkdir -p .before &&
            pivot_root . .before && umount -l /.before && exec sleep infinity' \
        - "$clean_root" &
    clean_root_holder=$!
    local tries=100
    until nsenter -t $clean_root_holder -m -r cat /proc/$clean_root_holder/comm 2>/dev/null |
        grep -q sleep; do
        tries=$((tries - 1))
        [ $tries -gt 0 ] && kill -0 $clean_root_holder 2>/dev/null || return 1
        sleep 0.1
    done
}

# Runs a command in it as a user, with the environment as given.
use_as_machine() { # USER COMMAND...
    local user=$1
    shift
    nsenter -t "$clean_root_holder" -m -r env -C / setpriv --reuid "$user" --regid "$user" \
        --clear-groups "$@"
}

remove_clean_root() {
    local i
    [ -z "$clean_root_holder" ] || kill "$clean_root_holder" 2>/dev/null
    for ((i = ${#clean_root_mounts[@]} - 1; i >= 0; i--)); do umount -l "${clean_root_mounts[i]}"; done
    clean_root_mounts=()
    [ -z "$clean_root" ] || [ -n "${KEEP_ROOT:-}" ] || rm -rf --one-file-system "$clean_root"
}
