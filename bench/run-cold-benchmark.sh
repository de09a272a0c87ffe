#!/usr/bin/env bash
# The cold-cache rows of the scan benchmark alone: builds only what they need (release preset),
# writes the corpus if missing and prints the RESULT lines of kelvaro_bench_cold.
#
#   bench/run-cold-benchmark.sh [POOL_SIZE...]      KELVARO_BENCH_RUNS=3 by default
set -euo pipefail

SOURCE_DIR="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
OUT_DIR="$SOURCE_DIR/build/release/bench"
RUNS="${KELVARO_BENCH_RUNS:-3}"

cd "$SOURCE_DIR"
cmake --preset release -DKELVARO_BUILD_TESTS=OFF -DKELVARO_BUILD_BENCH=ON >/dev/null
cmake --build --preset release --target kelvaro_bench_corpus kelvaro_bench_cold >&2
"$OUT_DIR/kelvaro_bench_corpus" "$OUT_DIR/corpus" >&2
SMALL="$OUT_DIR/corpus/small"
FILES="$(find "$SMALL" -type f \( -iname '*.arw' -o -iname '*.raf' -o -iname '*.nef' \
    -o -iname '*.cr2' -o -iname '*.cr3' -o -iname '*.rw2' -o -iname '*.jpg' -o -iname '*.dng' \
    -o -iname '*.orf' \) | wc -l)"
# Every file of the corpus is a photo: each gives one row.
"$OUT_DIR/kelvaro_bench_cold" "$SMALL" "$RUNS" "$FILES" "$@"
