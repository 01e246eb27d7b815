#!/bin/bash
# Runs the fuzzers, two at a time, and prints a line for each. Builds them first; ends with 1 when
# one found something, did not start or ran nothing. What was found stays in build/sanitizers/findings.
#   tools/short_fuzz.sh [SECONDS [NAME...]]   SECONDS for each (default 2); NAME as it is printed,
#                                             such as ExtractionFuzzer or FamilyFuzzer.3
set -u
cd "$(dirname "$0")/.." || exit 1

# One fuzzer, called by this script itself.
if [ "${VELMORANT_FUZZ_WORK:-}" != "" ]; then
    name=$1
    option=()
    [ "${name#FamilyFuzzer.}" = "$name" ] || option=(--family="${name#FamilyFuzzer.}")
    seeds="$VELMORANT_FUZZ_WORK/recordings"
    case $name in
    ExtractionFuzzer | FamilyFuzzer.*) ;;
    TrackFileFuzzer | ExpatDocumentFuzzer) seeds="$VELMORANT_FUZZ_WORK/tracks" ;;
    *) seeds="$VELMORANT_FUZZ_WORK/none" ;;
    esac
    mkdir -p "$VELMORANT_FUZZ_WORK/corpus/$name"
    log="$VELMORANT_FUZZ_WORK/$name.log"
    "build/sanitizers/fuzz/${name%.*}" "${option[@]}" -max_total_time="$VELMORANT_FUZZ_SECONDS" \
        -timeout=25 -rss_limit_mb=2048 -artifact_prefix="build/sanitizers/findings/$name-" \
        "$VELMORANT_FUZZ_WORK/corpus/$name" "$seeds" >"$log" 2>&1
    code=$?
    runs=$(sed -n 's/^Done \([0-9]*\) runs in .*/\1/p' "$log")
    if [ $code -eq 0 ] && [ "${runs:-0}" -gt 0 ]; then
        echo "  $name: $runs runs"
        exit 0
    fi
    echo "  $name: FAILED with exit code $code"
    tail -n 20 "$log"
    exit 1
fi

export VELMORANT_FUZZ_SECONDS=${1:-2}
[ $# -eq 0 ] || shift

log=$(cmake --preset sanitizers && cmake --build --preset sanitizers --target fuzzers) || {
    tail -n 20 <<<"$log"
    exit 1
}
VELMORANT_FUZZ_WORK=$(mktemp -d)
export VELMORANT_FUZZ_WORK
trap 'rm -rf "$VELMORANT_FUZZ_WORK"' EXIT
mkdir -p build/sanitizers/findings "$VELMORANT_FUZZ_WORK"/{recordings,tracks,none}

# A recording of every layout, and track files of a few, are what the fuzzers start from, where a
# build with the maker is at hand.
for build in build/default build/sanitizers build/benchmarks; do
    [ -x "$build/tools/make_recordings" ] && [ -x "$build/program/movsupport/Parse" ] || continue
    "$build/tools/make_recordings" "$VELMORANT_FUZZ_WORK/recordings" 3 >/dev/null || exit 1
    for layout in freegps_letters_28 gpmf_gps5 camm text_pndm; do
        XDG_CACHE_HOME="$VELMORANT_FUZZ_WORK/cache" "$build/program/movsupport/Parse" \
            "$VELMORANT_FUZZ_WORK/recordings/$layout.MP4" || exit 1
        mv "$VELMORANT_FUZZ_WORK"/cache/*/*/output.kml "$VELMORANT_FUZZ_WORK/tracks/$layout.xml"
    done
    break
done
# Recordings whose boxes hold the texts of files beside them.
cp tests/data/fuzz_corpus/*.mp4 "$VELMORANT_FUZZ_WORK/recordings"
echo "  starting from $(find "$VELMORANT_FUZZ_WORK/recordings" -type f | wc -l) recordings"

names=("$@")
if [ ${#names[@]} -eq 0 ]; then
    for fuzzer in build/sanitizers/fuzz/*Fuzzer; do
        case $fuzzer in
        */FamilyFuzzer)
            count=$("$fuzzer" --families) || exit 1
            for ((i = 0; i < count; i++)); do
                names+=("FamilyFuzzer.$i")
            done
            ;;
        *) names+=("$(basename "$fuzzer")") ;;
        esac
    done
fi
printf '%s\n' "${names[@]}" | xargs -P 2 -n 1 "$0"
