#!/usr/bin/env bash
# The real window over large libraries: resident memory once the first scan is done and the
# current tab's chart is painted, the growth per photo, and the time from the start of the scan to
# that chart.
#
#   bench/run-window-benchmark.sh BUILD_DIR CORPUS [SIZE...]
#
# BUILD_DIR holds the built kelvaro_bench_window and kelvaro-make-samples; CORPUS is the bench
# corpus's 20,000-file library. Libraries of SIZE photos (default 20000 200000) are made of
# hard-linked copies of it beside it, and reused. The synthetic sample library is the baseline the
# growth is taken against. One line per library on standard output:
#
#   WINDOW library=NAME photos=N rss_kib=K ... (kelvaro_bench_window's fields) growth_b=G
set -euo pipefail

BUILD_DIR="$1"
CORPUS="$2"
shift 2
SIZES=("$@")
[ ${#SIZES[@]} -gt 0 ] || SIZES=(20000 200000)
WINDOW="$BUILD_DIR/bench/kelvaro_bench_window"
SAMPLES_TOOL="$BUILD_DIR/tools/make-samples/kelvaro-make-samples"
LIBRARIES="$(dirname "$CORPUS")/window-libraries"

die() { printf 'run-window-benchmark: %s\n' "$*" >&2; exit 1; }
field() { tr ' ' '\n' <<<"$2" | sed -n "s/^$1=//p"; }

[ -x "$WINDOW" ] || die "no $WINDOW"
[ -d "$CORPUS" ] || die "no corpus $CORPUS"
CORPUS_PHOTOS="$(find "$CORPUS" -type f ! -name '.*' | wc -l)"

# A library of SIZE photos: whole copies of the corpus, hard-linked, so it costs no disk space.
library() {
    local size="$1" dir="$LIBRARIES/$1" copies copy
    copies=$(((size + CORPUS_PHOTOS - 1) / CORPUS_PHOTOS))
    if [ ! -f "$dir/.complete" ]; then
        rm -rf "$dir"
        mkdir -p "$dir"
        for ((copy = 1; copy <= copies; copy++)); do
            cp -al "$CORPUS" "$dir/$(printf 'copy%03d' "$copy")"
        done
        touch "$dir/.complete"
    fi
    echo "$dir"
}

run_window() {
    xvfb-run -a -s "-screen 0 1500x1000x24" "$WINDOW" "$1" | grep '^RESULT ' \
        || die "no result for $1"
}

mkdir -p "$LIBRARIES"
if [ ! -d "$LIBRARIES/samples" ]; then
    "$SAMPLES_TOOL" "$LIBRARIES/samples.tmp" >/dev/null
    mv "$LIBRARIES/samples.tmp" "$LIBRARIES/samples"
fi
BASE="$(run_window "$LIBRARIES/samples")"
BASE_PHOTOS="$(field photos "$BASE")"
BASE_RSS="$(field rss_kib "$BASE")"
echo "WINDOW library=samples ${BASE#RESULT } growth_b=-"

for size in "${SIZES[@]}"; do
    result="$(run_window "$(library "$size")")"
    photos="$(field photos "$result")"
    growth="$(awk "BEGIN { printf \"%.0f\", ($(field rss_kib "$result") - $BASE_RSS) * 1024 \
        / ($photos - $BASE_PHOTOS) }")"
    echo "WINDOW library=$size ${result#RESULT } growth_b=$growth"
done
