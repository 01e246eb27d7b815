#!/bin/bash
# What takes longer than the daily tests; ./test.sh --long calls it after its build. Prints a line a
# test and ends with 1 when one failed.
#   VELMORANT_STARTS         how often the program is started, plainly and again with an environment
#                            that is read slowly (default 100)
#   VELMORANT_KILLS          how often it is killed (default 30)
#   VELMORANT_CLICKS         how many places of routes are clicked (default 200)
#   VELMORANT_DRIVES         how many random drives every layout records (default 500)
#   VELMORANT_FUZZ_SECONDS   how long each fuzzer runs (default 120)
#   VELMORANT_HOSTILE        how many damaged recordings are read (default 20000)
#   VELMORANT_HOSTILE_SEED   which damage (default 1)
#   VELMORANT_MUTANTS        how many places of the logic are broken (default 200)
#   VELMORANT_MUTATION_SEED  which places (default 1)
#   tools/long_tests.sh NAME...   only these: road clicks kills starts update fuzz hostile mutation
#                                 drives package keyboard clean
set -u
cd "$(dirname "$0")/.." || exit 1
tests=${*:-road clicks kills starts update fuzz hostile mutation drives package keyboard clean}
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

# Each program on a display of its own; on a machine that has more to do than it can.
start_again_and_again() {
    python3 tools/start_and_kill.py starts "$starts" --load 1
    result "repeated starts without a sound card" $?
    python3 tools/start_and_kill.py starts "$starts" --load 1 --slowed
    result "repeated starts with an environment that is read slowly" $?
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
        python3 tools/start_and_kill.py kills "$kills"
        result "killed at random moments" $?
        ;;
    starts)
        start_again_and_again
        ;;
    update)
        update
        ;;
    drives)
        VELMORANT_DRIVES=${VELMORANT_DRIVES:-500} build/default/tests/telemetry/test_telemetry \
            --gtest_filter='RandomDrives.*' >"$work/drives.log" 2>&1
        code=$?
        grep -E ' valid seconds lost|Failure| m off ' "$work/drives.log" | head -n 20
        result "random drives in every layout" $code
        ;;
    fuzz)
        tools/short_fuzz.sh "$fuzz_seconds"
        result "fuzzers" $?
        ;;
    hostile)
        build/default/tools/hostile_bytes build/default/program/movsupport/Parse "$work/hostile" \
            "${VELMORANT_HOSTILE:-20000}" "${VELMORANT_HOSTILE_SEED:-1}"
        result "damaged recordings" $?
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
