#!/bin/bash
# Installs what is missing, builds, and runs every check and test. The last line says how many
# passed and failed.
#   ./test.sh          under 15 minutes on 2 cores
#   ./test.sh --long   also hundreds of recordings, long fuzz runs, clean-system installs and
#                      repeated starts
set -u
cd "$(dirname "$0")" || exit 1
long=no
case "${1:-}" in
"") ;;
--long) long=yes ;;
*)
    sed -n '2,6s/^# \{0,1\}//p' "$0"
    exit 2
    ;;
esac

passed=0
failed=0
broken=""

# One check: a name and a command that ends with 0 when all is well.
check() {
    local name=$1
    shift
    echo "== $name"
    if "$@"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        broken="$broken\n  $name"
    fi
}

# The tests of one build folder, counted one by one.
tests_of() {
    local name=$1 folder=$2
    shift 2
    local log
    log=$(mktemp)
    echo "== $name"
    (cd "$folder" && "$@") 2>&1 | tee "$log" | grep -vE '^ *[0-9]+/[0-9]+ Test.*Passed|^ *Start +[0-9]+'
    local total bad
    total=$(sed -n 's/^.*tests failed out of \([0-9]*\)$/\1/p' "$log" | tail -n 1)
    bad=$(sed -n 's/^.*, \([0-9]*\) tests failed out of.*$/\1/p' "$log" | tail -n 1)
    if [ -z "$total" ] || [ "$total" -eq 0 ]; then
        failed=$((failed + 1))
        broken="$broken\n  $name: no test ran"
    else
        passed=$((passed + total - bad))
        failed=$((failed + bad))
        [ "$bad" -eq 0 ] || broken="$broken\n$(sed -n '/The following tests FAILED/,$p' "$log")"
    fi
    rm -f "$log"
}

finish() {
    [ -z "$broken" ] || echo -e "Failed:$broken"
    echo "$passed passed, $failed failed"
    [ "$failed" -eq 0 ] && exit 0
    exit 1
}

if [ "$long" = yes ]; then
    tools/packages.sh long || exit 1
else
    tools/packages.sh test || exit 1
fi

check "formatting" tools/check_format.sh
check "includes follow the arrows" tools/check_includes.sh
check "the include check fails on a forbidden include" tools/check_includes_test.sh
check "the places that are broken to try the tests" tools/mutation_test.py
check "nothing passes the gate by" tools/check_gate.sh
check "the check of the gate fails on each way past it" tools/check_gate_test.sh
check "the environment is changed in one place" tools/check_environment.sh
check "the check of the environment fails on each change" tools/check_environment_test.sh
check "file lengths" tools/check_sizes.sh

for preset in default sanitizers; do
    if ! { cmake --preset $preset >/dev/null && cmake --build --preset $preset; }; then
        check "build: $preset" false
        finish
    fi
    check "build: $preset" true
done

# The analysis uses the time in which tests wait.
scope=--quick
[ "$long" = no ] || scope=--all
nice -n 19 tools/check_tidy.sh $scope >build/tidy.out 2>&1 &
tidy=$!
analysed() {
    wait "$tidy"
    local code=$?
    cat build/tidy.out
    return $code
}

export ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1
tests_of "unit tests under ASan and UBSan" build/sanitizers ctest -j2 --output-on-failure
# More at once than there are cores: the whole program's tests wait most of their time.
tests_of "unit, adapter and end-to-end tests" build/default ctest -j6 --output-on-failure

check "a few seconds of every fuzzer" tools/short_fuzz.sh 2
check "static analysis" analysed

if [ "$long" = yes ]; then
    tools/long_tests.sh || failed=$((failed + 1))
fi
finish
