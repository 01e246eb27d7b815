#!/bin/bash
# What takes longer than the daily tests; ./test.sh --long calls it after its build. Prints a line a
# test and ends with 1 when one failed.
#   VELMORANT_STARTS         how often the program is started (default 100)
#   VELMORANT_KILLS          how often it is killed (default 30)
#   VELMORANT_CLICKS         how many places of routes are clicked (default 200)
#   VELMORANT_FUZZ_SECONDS   how long each fuzzer runs (default 120)
#   VELMORANT_MUTANTS        how many places of the logic are broken (default 200)
#   VELMORANT_MUTATION_SEED  which places (default 1)
#   tools/long_tests.sh NAME...   only these: road clicks kills starts update fuzz mutation package
#                                 keyboard clean
set -u
cd "$(dirname "$0")/.." || exit 1
tests=${*:-road clicks kills starts update fuzz mutation package keyboard clean}
starts=${VELMORANT_STARTS:-100}
kills=${VELMORANT_KILLS:-30}
fuzz_seconds=${VELMORANT_FUZZ_SECONDS:-120}
failed=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
program="$PWD/build/default/program"

result() { # NAME EXIT-CODE
    if [ "$2" -eq 0 ]; then
        echo "passed: $1"
    else
        echo "FAILED: $1"
        failed=1
    fi
}

# A home of its own with a language and a card's recordings in the list.
prepare_home() {
    export HOME="$work/home" XDG_CONFIG_HOME="$work/home/config" XDG_DATA_HOME="$work/home/data"
    export XDG_CACHE_HOME="$work/home/cache" XDG_RUNTIME_DIR="$work/home/run"
    mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME"
    mkdir -p -m 700 "$XDG_RUNTIME_DIR"
    "$program/velmorant-setup"
    [ -d "$work/card" ] ||
        build/default/tools/make_card "$work/card" --one-picture --seconds 5 >/dev/null
    "$program/velmorant-list" "$work/card" >/dev/null
}

sums() { find "$work/card" "$XDG_CONFIG_HOME" -type f -name '*.[mM][pP]4' -print0 | sort -z |
    xargs -0 sha256sum; }

# Waits for a line of the journal while the program lives.
journal_has() { # JOURNAL PATTERN PROCESS SECONDS
    local tries=$(($4 * 10))
    while ! grep -q "$2" "$1" 2>/dev/null; do
        tries=$((tries - 1))
        [ $tries -gt 0 ] && kill -0 "$3" 2>/dev/null || return 1
        sleep 0.1
    done
}

# The first start writes the values that the configuration still lacks.
start_once() {
    VELMORANT_JOURNAL="$work/journal" setsid "$program/Velmorant DVR Tools" >"$work/log" 2>&1 &
    local process=$!
    journal_has "$work/journal" '^page velmorant:' "$process" 60
    local code=$?
    kill -TERM -- "-$process" 2>/dev/null
    wait "$process" 2>/dev/null
    return $code
}

# The real program and, by turns, the driven one, which is caught while it extracts and plays.
kill_at_random_moments() {
    local before i moment process
    start_once || return 1
    before=$(sums)
    for ((i = 1; i <= kills; i++)); do
        "$program/velmorant-list" "$work/card" >/dev/null || return 1
        if [ $((i % 2)) -eq 0 ]; then
            setsid "$program/Velmorant DVR Tools" >"$work/log" 2>&1 &
        else
            setsid build/default/tools/drive_road "$program" "$work/pictures" >"$work/log" 2>&1 &
        fi
        process=$!
        moment=$((RANDOM % 20)).$((RANDOM % 10))
        sleep "$moment"
        kill -KILL -- "-$process" 2>/dev/null
        wait "$process" 2>/dev/null
        if [ "$(sums)" != "$before" ]; then
            echo "  after a kill at $moment s a file of the card or the configuration differs"
            return 1
        fi
    done
    echo "  killed $kills times; configuration and card are whole"
}

# With an empty sound configuration there is no card to be found, whatever the machine has.
start_without_sound() {
    local i process
    for ((i = 1; i <= starts; i++)); do
        "$program/velmorant-list" "$work/card" >/dev/null || return 1
        rm -f "$work/journal"
        ALSA_CONFIG_PATH=/dev/null PULSE_SERVER=/nowhere VELMORANT_JOURNAL="$work/journal" setsid \
            "$program/Velmorant DVR Tools" >"$work/log" 2>&1 &
        process=$!
        if ! journal_has "$work/journal" '^page velmorant:' "$process" 60; then
            echo "  start $i shows no map page within 60 s"
            tail -n 5 "$work/log"
            kill -KILL -- "-$process" 2>/dev/null
            return 1
        fi
        kill -TERM -- "-$process" 2>/dev/null
        wait "$process" 2>/dev/null
    done
    echo "  started $starts times"
}

# The update against a real web server. Mounting the disks that become full needs root.
update() {
    local part as_root code
    for part in kill full speed; do
        as_root=""
        [ $part != full ] || [ "$(id -u)" -eq 0 ] || as_root=sudo
        $as_root python3 tests/desktop/update/endurance.py $part \
            build/default/tests/desktop/update/update_driver \
            build/default/server/catalogue/velmorant-catalogue
        code=$?
        result "update: $part" $code
    done
}

# Under a display of its own this script calls itself for the parts that need one.
if [ "${VELMORANT_LONG_PART:-}" = kills ]; then
    prepare_home && kill_at_random_moments
    exit
elif [ "${VELMORANT_LONG_PART:-}" = starts ]; then
    prepare_home && start_without_sound
    exit
fi

on_display() { tools/on_virtual_display.sh 1024x708 "$@"; }

for test in $tests; do
    case $test in
    road)
        for name in the_window_repaints_while_300_recordings_are_added_and_extracted \
            a_dropped_card_of_5000_files_is_listed_within_a_second \
            cancel_answers_at_once the_queue_plays_through_50_ends english chinese; do
            on_display build/default/tests/gui/long_road --gtest_filter="*.$name" \
                >"$work/road.log" 2>&1
            code=$?
            grep -E '^(longest|the run|memory|[0-9]+ rows)|Failure|does not|Expected|actual' "$work/road.log"
            result "$name" $code
        done
        ;;
    clicks)
        VELMORANT_CLICKS=${VELMORANT_CLICKS:-200} on_display \
            build/default/tests/gui/velmorant_gui_tests --gtest_filter='RouteClickTest.*' \
            >"$work/clicks.log" 2>&1
        code=$?
        grep -E ' clicks, |Failure|: the player' "$work/clicks.log"
        result "random places of routes lead to their recording and second" $code
        ;;
    kills)
        VELMORANT_LONG_PART=kills on_display tools/long_tests.sh
        result "killed at random moments" $?
        ;;
    starts)
        VELMORANT_LONG_PART=starts on_display tools/long_tests.sh
        result "repeated starts without a sound card" $?
        ;;
    update)
        update
        ;;
    fuzz)
        tools/short_fuzz.sh "$fuzz_seconds"
        result "fuzzers" $?
        ;;
    mutation)
        tools/mutation.py --count "${VELMORANT_MUTANTS:-200}" --seed "${VELMORANT_MUTATION_SEED:-1}"
        result "the tests catch what is broken on purpose" $?
        ;;
    package)
        tools/package_test.sh
        result "package" $?
        ;;
    keyboard)
        tools/on_virtual_display.sh 1024x768 dbus-run-session -- /usr/bin/python3 \
            tests/gui/accessibility_test.py "$program" resources/skin/texts \
            build/default/tests/gui/card build/window-pictures \
            build/default/server/catalogue/velmorant-catalogue 2>"$work/keyboard.log"
        result "the whole program by keyboard and screen reader" $?
        ;;
    clean)
        for command in ./run.sh ./test.sh; do
            tools/clean_system_test.sh $command
            result "clean system: $command" $?
        done
        ;;
    *)
        echo "no such test: $test" >&2
        exit 2
        ;;
    esac
done
exit $failed
