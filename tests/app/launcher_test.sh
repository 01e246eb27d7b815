#!/bin/sh
# The launcher starts the program whatever becomes of the configuration.
# Usage: launcher_test.sh LAUNCHER.in PROGRAM_FOLDER (which holds velmorant-setup)
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/folder" "$work/config"
cp "$2/velmorant-setup" "$work/folder"
sed "s|@VELMORANT_INSTALLED_FOLDER@|$work/folder|" "$1" >"$work/launcher"
cat >"$work/folder/Velmorant DVR Tools" <<'END'
#!/bin/sh
echo "started in $PWD for this run: ${VELMORANT_LANGUAGE:-}"
END
chmod +x "$work/launcher" "$work/folder/Velmorant DVR Tools"

expect() { # what, wanted, found
    [ "$2" = "$3" ] && return
    echo "$1: wanted \"$2\", found \"$3\""
    exit 1
}
launch() { # configuration folder, locale
    env -i PATH="$PATH" HOME="$work" XDG_CONFIG_HOME="$1" LANG="$2" \
        "$work/launcher" 2>"$work/errors" || echo "ended with $?"
}
configuration=velmorant-dvr-tools/system32/qvconfig.mp4

expect "first start" "started in $work/folder for this run: " \
    "$(launch "$work/config" zh_TW.UTF-8)"
expect "the language kept" mainv=1002 "$(grep mainv "$work/config/$configuration")"
expect "second start" "started in $work/folder for this run: " \
    "$(launch "$work/config" en_GB.UTF-8)"
expect "the language still kept" mainv=1002 "$(grep mainv "$work/config/$configuration")"

# A file in the place of the folder keeps even the system's owner from writing.
: >"$work/taken"
expect "nothing can be written" "started in $work/folder for this run: 1002" \
    "$(launch "$work/taken" zh_TW.UTF-8)"
expect "nothing can be written, in another locale" "started in $work/folder for this run: 1001" \
    "$(launch "$work/taken" en_GB.UTF-8)"
grep -q 'cannot be written' "$work/errors" || {
    echo "the error output names no reason:"
    cat "$work/errors"
    exit 1
}

rm "$work/folder/velmorant-setup"
expect "no installer's step" "started in $work/folder for this run: " \
    "$(launch "$work/config" en_GB.UTF-8)"
