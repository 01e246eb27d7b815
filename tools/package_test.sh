#!/bin/bash
# Builds the Debian package and tries it as a user gets it: lintian finds no error, it installs in a
# clean Debian 12 with what it depends on, an ordinary user starts it from the launcher, and after
# its removal nothing but that user's own files is left. Needs root, mmdebstrap and lintian. Leaves
# pictures in build/package-pictures; the last lines name start-up times and memory.
set -u
cd "$(dirname "$0")/.." || exit 1
. tools/clean_root.sh
user=driver
pictures="$PWD/build/package-pictures"
work=$(mktemp -d /var/tmp/package-test.XXXXXX)
display=""
started=""
clean_up() {
    [ -z "$started" ] || kill -KILL -- "-$started" 2>/dev/null
    [ -z "$display" ] || kill "$display" 2>/dev/null
    remove_clean_root
    rm -rf "$work"
}
trap clean_up EXIT

fail() {
    echo "  $*"
    exit 1
}

build_package() {
    cmake --preset program >/dev/null && cmake --build --preset program >"$work/build.log" || {
        tail -n 20 "$work/build.log"
        fail "the program does not build"
    }
    rm -f build/program/velmorant-dvr-tools_*.deb
    (cd build/program && cpack >"$work/cpack.log") || fail "cpack fails"
    package=$(echo build/program/velmorant-dvr-tools_*.deb)
    [ -f "$package" ] || fail "no package was made"
    lintian --fail-on error "$package" >"$work/lintian.log" 2>&1 || {
        cat "$work/lintian.log"
        fail "lintian reports errors"
    }
    echo "  $(basename "$package"), $(($(stat -c %s "$package") / 1024)) KiB; lintian:" \
        "$(grep -c '^E:' "$work/lintian.log") errors, $(grep -c '^W:' "$work/lintian.log") warnings"
}

# Every path of the system but what the package manager, the running system and this test note down.
paths_of_system() {
    in_clean_root find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /run -o \
        -path /tmp -o -path /var/tmp -o -path /.before -o -path /var/cache -o -path /var/log -o -path /var/lib/apt -o \
        -path /var/lib/dpkg \) -prune -o -print | sort
}

install_package() {
    make_clean_root ca-certificates || fail "no clean Debian 12"
    in_clean_root useradd --create-home "$user"
    in_clean_root apt-get update -qq || fail "no package lists"
    paths_of_system >"$work/before"
    cp "$package" "$clean_root/tmp/package.deb"
    chmod 644 "$clean_root/tmp/package.deb"
    in_clean_root apt-get install -y -qq --no-install-recommends /tmp/package.deb \
        >"$work/install.log" 2>&1 || {
        tail -n 20 "$work/install.log"
        fail "the package does not install"
    }
    in_clean_root dpkg -L velmorant-dvr-tools | sort >"$work/package-paths"
    paths_of_system >"$work/installed"
    echo "  installed with $(grep -c '^Setting up' "$work/install.log") packages"
}

open_display() {
    Xvfb -displayfd 3 -screen 0 1024x708x24 -nolisten tcp 3>"$work/display" 2>/dev/null &
    display=$!
    local tries=100
    until [ -s "$work/display" ]; do
        tries=$((tries - 1))
        [ $tries -gt 0 ] || fail "no virtual display"
        sleep 0.1
    done
    export DISPLAY=":$(cat "$work/display")"
    share_with_clean_root /tmp/.X11-unix
    mkdir -m 777 "$work/home"
    share_with_clean_root "$work/home"
    open_as_machine || fail "the clean root cannot be entered"
}

# The launcher as the desktop starts it: with nothing of this machine but display and language.
launch() { # LANGUAGE [NAME=VALUE...]
    local language=$1
    shift
    use_as_machine "$user" env -i HOME="/home/$user" USER="$user" DISPLAY="$DISPLAY" \
        LANG="$language" PATH=/usr/local/bin:/usr/bin:/bin "$@" velmorant-dvr-tools
}

see_it_run() { # LANGUAGE PICTURE
    local journal="$clean_root/home/$user/journal"
    rm -f "$journal"
    launch "$1" VELMORANT_JOURNAL="/home/$user/journal" >"$work/run.log" 2>&1 &
    local process=$!
    local tries=300
    until grep -q ' info painted frame' "$journal" 2>/dev/null && grep -q ' info page velmorant:' "$journal"; do
        tries=$((tries - 1))
        [ $tries -gt 0 ] && kill -0 $process 2>/dev/null || {
            cat "$work/run.log"
            fail "$1: no painted window with a map page within 30 s"
        }
        sleep 0.1
    done
    sleep 4 # the splash goes after 3 s
    import -window root "$pictures/$2.png"
    [ "$(identify -format %k "$pictures/$2.png")" -gt 100 ] || fail "$1: the picture is empty"
    pgrep -u "$(in_clean_root id -u "$user")" -f QtWebEngineProcess >/dev/null ||
        fail "$1: no process of the map page"
    ! grep -q 'Sandboxing disabled' "$work/run.log" || fail "$1: the browser runs without its sandbox"
    kill $process
    wait $process 2>/dev/null
    rm -f "$journal"
}

measure_start() {
    cat >"$work/launch" <<END
#!/bin/bash
exec nsenter -t $clean_root_holder -m -r env -C / setpriv --reuid $user --regid $user --clear-groups \\
    velmorant-dvr-tools
END
    chmod +x "$work/launch"
    LANG=en_GB.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin \
        benchmarks/start_up.py "$work/launch" --limits --folder "$work/home" | sed 's/^/  /'
    return "${PIPESTATUS[0]}"
}

remove_package() {
    in_clean_root apt-get purge -y -qq velmorant-dvr-tools >"$work/remove.log" 2>&1 || {
        tail -n 20 "$work/remove.log"
        fail "the package cannot be removed"
    }
    paths_of_system >"$work/removed"
    # What came with the package and went with it, and what other packages own, is as it was.
    comm -23 "$work/removed" "$work/installed" >"$work/new"
    comm -12 "$work/removed" "$work/package-paths" | comm -23 - "$work/before" |
        while read -r path; do in_clean_root dpkg -S "$path" >/dev/null 2>&1 || echo "$path"; done \
            >"$work/left"
    grep -v "^/home/$user\(/\|$\)" "$work/new" >>"$work/left"
    if [ -s "$work/left" ]; then
        cat "$work/left"
        fail "the removal leaves the paths above"
    fi
    echo "  removed; the user's own files that stay:"
    grep -E "^/home/$user/(\.config|\.local|\.cache)" "$work/new" | grep -vE '/(page|qtshadercache)' |
        sed 's/^/    /' | head -n 20
}

rm -rf "$pictures"
mkdir -p "$pictures"
build_package
install_package
open_display
see_it_run en_GB.UTF-8 english
rm -rf "$clean_root/home/$user/.config" "$clean_root/home/$user/.cache"
see_it_run zh_TW.UTF-8 chinese
# Not a failure of the package: a busy machine starts nothing in time.
measure_start || echo "  start-up missed its limits"
remove_package
echo "  pictures in build/package-pictures"
