#!/usr/bin/env bash
# Builds the "fuzz" preset and runs fuzz_exiffile for a number of seconds on the corpus in
# build/fuzz/corpus, which is seeded from the fixture builder and from the shared sample and
# malformed-file folders when they exist, and on the kept corpus fuzz/corpus (read only), with
# the dictionary fuzz/kelvaro.dict. Crashing inputs land in build/fuzz/artifacts/.
#
# To renew the kept corpus, merge a run's corpus into it and commit the result. Only inputs grown
# from the fixture builder's seeds may be kept (the shared folders' files stay out of the
# repository), so merge a run started without the shared folders:
#   build/fuzz/fuzz/fuzz_exiffile -merge=1 -max_len=65536 fuzz/corpus <that run's corpus>
#
# Usage: fuzz/run-fuzzer.sh [seconds, default 60] [further libFuzzer options ...]
set -euo pipefail

seconds="${1:-60}"
shift || true

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$root/build/fuzz"
corpus="$build/corpus"
artifacts="$build/artifacts"

cd "$root"
cmake --preset fuzz
# The machine is shared: two jobs at most.
cmake --build --preset fuzz --parallel 2 --target fuzz_exiffile fuzz_seed_corpus

mkdir -p "$corpus" "$artifacts"
sources=()
for dir in "$root/../shared/samples" "$root/../shared/samples-heif" "$root/../shared/malformed"; do
    if [ -d "$dir" ]; then
        sources+=("$dir")
    fi
done
"$build/fuzz/fuzz_seed_corpus" "$corpus" "${sources[@]}"

export ASAN_OPTIONS="${ASAN_OPTIONS:-abort_on_error=1:detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
exec "$build/fuzz/fuzz_exiffile" \
    -max_len=65536 -timeout=5 -rss_limit_mb=2048 -dict="$root/fuzz/kelvaro.dict" \
    -max_total_time="$seconds" -print_final_stats=1 \
    -artifact_prefix="$artifacts/" \
    "$@" "$corpus" "$root/fuzz/corpus"
