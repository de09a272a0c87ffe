#!/usr/bin/env bash
# Kelvaro's scan against ExifTool, Exiv2 and the file-system floor, plus the chart refresh.
#
# Builds the release preset's benchmark programs, writes the two photo libraries (reused when
# present), times everything with a warm page cache (one untimed warm-up, then the median of
# RUNS runs) and prints one table, also written to build/release/bench/results.md.
#
#   bench/run-benchmark.sh            RUNS=5
#   KELVARO_BENCH_RUNS=9 bench/run-benchmark.sh
#   KELVARO_BENCH_MILLION=1 bench/run-benchmark.sh   also the window over 1,000,000 photos (long)
#
# Other work on the machine disturbs the figures: the table records the load average at the
# start and at the end.
set -euo pipefail

SOURCE_DIR="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_DIR="$SOURCE_DIR/build/release"
OUT_DIR="$BUILD_DIR/bench"
CORPUS="$OUT_DIR/corpus"
RUNS="${KELVARO_BENCH_RUNS:-5}"
# The 25 MiB library has only 500 files: each timed sample adds up 40 scans of it (20,000 files,
# as many as one scan of the small library), so that a moment's load elsewhere weighs the same.
LARGE_PASSES=40
CHART_ROWS=200000
CHART_REFRESHES=200
# ExifTool manages a few hundred files a second: it reads the first four folders (2,000 files).
EXIFTOOL_FOLDERS=4
TAGS=(-FileName -DateTimeOriginal -Make -Model -LensModel -FocalLength -ISO -FNumber
      -ExposureTime -MeteringMode -ExposureProgram)
EXIV2_KEYS=(-K Exif.Image.Make -K Exif.Image.Model -K Exif.Photo.DateTimeOriginal
            -K Exif.Photo.LensModel -K Exif.Photo.FocalLength -K Exif.Photo.ISOSpeedRatings
            -K Exif.Photo.FNumber -K Exif.Photo.ExposureTime -K Exif.Photo.MeteringMode
            -K Exif.Photo.ExposureProgram)

log() { printf '== %s\n' "$*" >&2; }
die() { printf 'run-benchmark: %s\n' "$*" >&2; exit 1; }
loadavg() { cut -d' ' -f1-3 /proc/loadavg; }
now() { date +%s.%N; }

# Median of the numbers given as arguments.
median() {
    printf '%s\n' "$@" | sort -g | awk '{ v[NR] = $1 } END {
        if (NR == 0) { print 0; exit }
        if (NR % 2) print v[(NR + 1) / 2]; else print (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}

# field KEY LINE: the value of KEY=value in a RESULT line.
field() { tr ' ' '\n' <<<"$2" | sed -n "s/^$1=//p"; }

calc() { awk "BEGIN { printf \"$1\", $2 }"; }

verdict() { # verdict "a >= b"
    if awk "BEGIN { exit !($1) }"; then echo met; else echo MISSED; fi
}

install_tools() {
    local missing=()
    command -v exiftool >/dev/null || missing+=(libimage-exiftool-perl)
    command -v exiv2 >/dev/null || missing+=(exiv2)
    [ ${#missing[@]} -eq 0 ] && return
    log "installing ${missing[*]}"
    local run=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || die "need root or sudo to install ${missing[*]}"
        run=(sudo)
    fi
    "${run[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${run[@]}" apt-get install -y -qq "${missing[@]}" >/dev/null
}

# The photo files of a tree, counted the way the scan's patterns match them.
count_photos() {
    find "$1" -type f \( -iname '*.arw' -o -iname '*.raf' -o -iname '*.nef' -o -iname '*.cr2' \
        -o -iname '*.cr3' -o -iname '*.rw2' -o -iname '*.jpg' -o -iname '*.dng' \
        -o -iname '*.orf' -o -iname '*.heic' -o -iname '*.heif' -o -iname '*.hif' \
        -o -iname '*.avif' \) | wc -l
}

LOAD_START="$(loadavg)"
cd "$SOURCE_DIR"
install_tools

log "building (release preset)"
# Tests are not needed here; leaving them out keeps the benchmark independent of their state.
cmake --preset release -DKELVARO_BUILD_TESTS=OFF -DKELVARO_BUILD_BENCH=ON >/dev/null
cmake --build --preset release --target kelvaro_bench_corpus kelvaro_bench_floor \
    kelvaro_bench_scan kelvaro_bench_stages kelvaro_bench_charts kelvaro_bench_stop \
    kelvaro_bench_cold kelvaro_bench_window kelvaro_bench_catalogue kelvaro-make-samples kelvaro-stats

log "corpus"
"$OUT_DIR/kelvaro_bench_corpus" "$CORPUS"
SMALL="$CORPUS/small"
LARGE="$CORPUS/large"
SMALL_FILES="$(count_photos "$SMALL")"
LARGE_FILES="$(count_photos "$LARGE")"
mapfile -t FOLDERS < <(find "$SMALL" -mindepth 2 -maxdepth 2 -type d | sort)
[ "${#FOLDERS[@]}" -gt 0 ] || die "no folders in $SMALL"

log "Kelvaro scan, $SMALL_FILES files"
SCAN_SMALL="$("$OUT_DIR/kelvaro_bench_scan" "$SMALL" "$RUNS" "$SMALL_FILES" scan_small)"
echo "$SCAN_SMALL" >&2
# The padded files are copies of one folder of the small library: that folder, scanned the same
# way and in turn with them, is the comparison that only the file size tells apart. (Each of the
# many short scans also carries a scan's fixed cost, which one scan of 20,000 files spreads thin.)
LARGE_FOLDER="$(find "$LARGE" -mindepth 2 -maxdepth 2 -type d | head -1)"
SAME_FOLDER="$SMALL/${LARGE_FOLDER#"$LARGE"/}"
[ -d "$SAME_FOLDER" ] || die "no folder $SAME_FOLDER in the small library"
log "Kelvaro scan, $LARGE_FILES files of 25 MiB, in turn with the same files unpadded"
SCAN_LARGE="$("$OUT_DIR/kelvaro_bench_scan" "$LARGE" "$RUNS" "$LARGE_FILES" scan_large \
    "$LARGE_PASSES" "$SAME_FOLDER")"
echo "$SCAN_LARGE" >&2

log "kelvaro-stats, $SMALL_FILES files, every statistic as CSV"
STATS_TOOL="$BUILD_DIR/tools/kelvaro-stats/kelvaro-stats"
# A settings store of its own: the defaults, as the scan benchmark's worker has them.
STATS_CONFIG="$(mktemp -d)"
stats_pass() { XDG_CONFIG_HOME="$STATS_CONFIG" "$STATS_TOOL" --format csv "$SMALL"; }
STATS_PHOTOS="$(stats_pass | awk -F';' '$1 == "Maker" { n += $3 } END { print n }')"
[ "$STATS_PHOTOS" -eq "$SMALL_FILES" ] || die "kelvaro-stats counted $STATS_PHOTOS photos"
times=()
for ((run = 0; run < RUNS; run++)); do
    start="$(now)"
    stats_pass >/dev/null
    times+=("$(calc '%.4f' "$(now) - $start")")
done
STATS_S="$(median "${times[@]}")"
STATS_RUNS="${times[*]}"
rm -rf "$STATS_CONFIG"

log "the scan in stages: walk, read, insert"
STAGES="$("$OUT_DIR/kelvaro_bench_stages" "$SMALL" "$RUNS")"
echo "$STAGES" >&2

log "floor: open, read 64 KiB, close"
FLOOR="$("$OUT_DIR/kelvaro_bench_floor" "$SMALL" "$RUNS")"
echo "$FLOOR" >&2

EXIFTOOL_DIRS=("${FOLDERS[@]:0:$EXIFTOOL_FOLDERS}")
EXIFTOOL_FILES=0
for d in "${EXIFTOOL_DIRS[@]}"; do
    EXIFTOOL_FILES=$((EXIFTOOL_FILES + $(count_photos "$d")))
done
log "ExifTool -fast2, $EXIFTOOL_FILES files ($(exiftool -ver))"
# The warm-up run also checks that every file gave a line.
lines="$( (exiftool -fast2 -r -n -T "${TAGS[@]}" "${EXIFTOOL_DIRS[@]}" 2>/dev/null || true) | wc -l)"
[ "$lines" -eq "$EXIFTOOL_FILES" ] || die "ExifTool printed $lines lines for $EXIFTOOL_FILES files"
times=()
for ((run = 0; run < RUNS; run++)); do
    start="$(now)"
    exiftool -fast2 -r -n -T "${TAGS[@]}" "${EXIFTOOL_DIRS[@]}" >/dev/null 2>&1 || true
    times+=("$(calc '%.4f' "$(now) - $start")")
done
EXIFTOOL_S="$(median "${times[@]}")"
EXIFTOOL_RUNS="${times[*]}"

exiv2_pass() {
    local folder
    for folder in "${FOLDERS[@]}"; do
        exiv2 -q -Pkv "${EXIV2_KEYS[@]}" "$folder"/* || true
    done
}
log "Exiv2, one call per folder of 500, $SMALL_FILES files ($(exiv2 --version | head -1))"
EXIV2_MAKES="$(exiv2_pass 2>/dev/null | grep -c 'Exif.Image.Make' || true)"
times=()
for ((run = 0; run < RUNS; run++)); do
    start="$(now)"
    exiv2_pass >/dev/null 2>&1
    times+=("$(calc '%.4f' "$(now) - $start")")
done
EXIV2_S="$(median "${times[@]}")"
EXIV2_RUNS="${times[*]}"

log "updateCharts() over $CHART_ROWS rows, $CHART_REFRESHES refreshes"
CHARTS="$(QT_QPA_PLATFORM=offscreen "$OUT_DIR/kelvaro_bench_charts" "$CHART_ROWS" "$RUNS" \
    "$CHART_REFRESHES" 2>/dev/null | grep '^RESULT')"
echo "$CHARTS" >&2

log "stopping a scan with $CHART_ROWS rows stored"
STOP="$("$OUT_DIR/kelvaro_bench_stop" "$SMALL" "$CHART_ROWS" "$RUNS")"
echo "$STOP" >&2

log "cold page cache: the files' pages dropped before every run; floor, pool sizes, warm ratio"
COLD="$("$OUT_DIR/kelvaro_bench_cold" "$SMALL" "$RUNS" "$SMALL_FILES")" || die "cold scan rows differ"
echo "$COLD" >&2

WINDOW_SIZES=(20000 200000)
[ -n "${KELVARO_BENCH_MILLION:-}" ] && WINDOW_SIZES+=(1000000)
log "the window over libraries of ${WINDOW_SIZES[*]} photos: memory and first chart"
WINDOW="$(bash "$SOURCE_DIR/bench/run-window-benchmark.sh" "$BUILD_DIR" "$SMALL" \
    "${WINDOW_SIZES[@]}")"
echo "$WINDOW" >&2
log "photo catalogue: rescans with it, without it, lstat floor; warm and cold; first scan; size"
CATALOGUE="$("$OUT_DIR/kelvaro_bench_catalogue" "$SMALL" "$RUNS" "$SMALL_FILES" \
    "$OUT_DIR/catalogue" catalogue)" || die "catalogue scan rows differ"
echo "$CATALOGUE" >&2
# Ten hard-linked copies of the small library: 200,000 files that cost no disk space.
HUGE="$CORPUS/huge"
if [ ! -d "$HUGE" ]; then
    mkdir -p "$HUGE.tmp"
    for ((copy = 0; copy < 10; copy++)); do cp -al "$SMALL" "$HUGE.tmp/copy$copy"; done
    mv "$HUGE.tmp" "$HUGE"
fi
HUGE_FILES="$(count_photos "$HUGE")"
log "photo catalogue over $HUGE_FILES files (hard links)"
CATALOGUE_HUGE="$("$OUT_DIR/kelvaro_bench_catalogue" "$HUGE" 1 "$HUGE_FILES" \
    "$OUT_DIR/catalogue-huge" catalogue_huge)" || die "catalogue scan rows differ (huge)"
echo "$CATALOGUE_HUGE" >&2
LOAD_END="$(loadavg)"

# ---- the table ----
K_RATE="$(field files_per_s "$SCAN_SMALL")"
K_LARGE_RATE="$(field files_per_s "$SCAN_LARGE")"
K_SAME_RATE="$(field other_files_per_s "$SCAN_LARGE")"
FLOOR_RATE="$(field files_per_s "$FLOOR")"
ET_RATE="$(calc '%.0f' "$EXIFTOOL_FILES / $EXIFTOOL_S")"
EX_RATE="$(calc '%.0f' "$SMALL_FILES / $EXIV2_S")"
R_ET="$(calc '%.1f' "$K_RATE / $ET_RATE")"
R_EX="$(calc '%.2f' "$K_RATE / $EX_RATE")"
R_FLOOR="$(calc '%.1f' "100 * $K_RATE / $FLOOR_RATE")"
R_LARGE="$(calc '%.1f' "100 * $K_LARGE_RATE / $K_SAME_RATE")"
R_LARGE_ALL="$(calc '%.1f' "100 * $K_LARGE_RATE / $K_RATE")"
stage() { field "$1" "$STAGES"; }
R_HEIF_START="$(calc '%.2f' "$(stage read_heif_start_us) / $(stage read_jpeg_us)")"
R_HEIF_END="$(calc '%.2f' "$(stage read_heif_end_us) / $(stage read_jpeg_us)")"
HWM="$(field hwm_growth_mb "$SCAN_SMALL")"
CHART_MS="$(field median_ms "$CHARTS")"
c() { field "$1" "$CHARTS"; }
LIVE_1="QChart $(c charts_1), QSqlQueryModel $(c models_1), controllers $(c controllers_1), date charts $(c datecharts_1); all QObjects $(c objects_1)"
LIVE_N="QChart $(c charts_n), QSqlQueryModel $(c models_n), controllers $(c controllers_n), date charts $(c datecharts_n); all QObjects $(c objects_n)"
# The window never destroys a replaced grouped focal-length controller (kept on purpose): that
# controller and its query model stay, one per refresh. Anything beyond them is growth.
KEPT=$(( $(c refreshes) - 1 ))
LIVE_GROWTH=$(( $(c charts_n) - $(c charts_1) + $(c models_n) - $(c models_1) - KEPT \
    + $(c controllers_n) - $(c controllers_1) - KEPT ))
# Every part the chart benchmark timed on its own: each statistic by its key, the date chart, and
# the bare SQL of the Lens statistic.
PARTS="$(tr ' ' '\n' <<<"$CHARTS" | sed -n 's/^\([A-Za-z0-9_]*\)_ms=\(.*\)/\1 \2/p' \
    | grep -v '^median \|^index \|^runs ' | paste -sd, | sed 's/,/, /g')"
STATISTICS_MS="$(field statistics_ms "$SCAN_SMALL")"
STATS_BASE_S="$(calc '%.4f' "$(field first_s "$SCAN_SMALL") + $STATISTICS_MS / 1000")"
R_STATS="$(calc '%.1f' "100 * $STATS_S / $STATS_BASE_S")"
cold() { field "$2" "$(grep "^RESULT $1 " <<<"$COLD")"; }
DEFAULT_READERS="$(cold rows default_threads)"
COLD_SEQ="$(cold cold_scan_1 files_per_s)"
COLD_DEF="$(cold "cold_scan_$DEFAULT_READERS" files_per_s)"
COLD_F1="$(cold cold_floor_1 files_per_s)"
COLD_F64="$(cold cold_floor_64 files_per_s)"
R_COLD_SEQ="$(calc '%.1f' "$COLD_DEF / $COLD_SEQ")"
R_COLD_FLOOR="$(calc '%.1f' "100 * $COLD_DEF / $COLD_F64")"
WARM_1="$(cold warm_scan_1 files_per_s)"
WARM_DEF="$(cold warm_scan_default files_per_s)"
R_WARM="$(calc '%.1f' "100 * $WARM_DEF / $WARM_1")"
COLD_HWM="$(cold memory default_hwm_growth_mb)"
CURVE=""
for n in 1 2 4 8 16 32 64; do
    CURVE="$CURVE${CURVE:+, }$n: $(cold "cold_scan_$n" files_per_s)"
done
cat_() { field "$2" "$(grep "^RESULT $1 " <<<"$CATALOGUE$(printf '\n')$CATALOGUE_HUGE")"; }
CAT_SPEEDUP="$(cat_ catalogue_warm speedup)"
CAT_FLOOR="$(cat_ catalogue_warm of_floor_pct)"
CAT_COLD_SPEEDUP="$(cat_ catalogue_cold speedup)"
CAT_COLD_FLOOR="$(cat_ catalogue_cold of_floor_pct)"
CAT_FIRST="$(cat_ catalogue_first slower_pct)"
CPU="$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -1)"

TABLE="$OUT_DIR/results.md"
{
    echo "| Measure | Result | Target | |"
    echo "|---|---|---|---|"
    echo "| Kelvaro scan, $SMALL_FILES files (TMyWorkerObject in a QThread, 13 patterns of 10 types, subdirectories, ending with the statistic indexes) | **$K_RATE files/s** (median $(field median_s "$SCAN_SMALL") s) | >= 25,000 (aim 50,000) | $(verdict "$K_RATE >= 25000") |"
    echo "| ExifTool $(exiftool -ver) -fast2 -r -n -T, 11 tags ($EXIFTOOL_FILES-file subset) | $ET_RATE files/s (median $EXIFTOOL_S s) | | |"
    echo "| Exiv2 $(exiv2 --version | head -1 | awk '{print $2}'), one call per folder of 500, 10 keys ($EXIV2_MAKES of $SMALL_FILES files gave a Make) | $EX_RATE files/s (median $EXIV2_S s) | | |"
    echo "| Where a Kelvaro file's time goes (one thread, median per file) | walk $(field walk_us "$STAGES") us, reading +$(field read_added_us "$STAGES") us, INSERT +$(field insert_added_us "$STAGES") us | | |"
    echo "| Reading one file by kind (one thread, median per file) | JPEG $(stage read_jpeg_us) us ($(stage jpeg_files) files); HEIF of 1-3 MiB with the Exif item near the start $(stage read_heif_start_us) us ($(stage heif_start_files)) = **${R_HEIF_START}x** a JPEG, at the end $(stage read_heif_end_us) us ($(stage heif_end_files)) = **${R_HEIF_END}x** | <= 2x each | $(verdict "$R_HEIF_START <= 2 && $R_HEIF_END <= 2") |"
    echo "| Floor: walk, open, read 64 KiB, close | $FLOOR_RATE files/s (median $(field median_s "$FLOOR") s) | | |"
    echo "| Kelvaro / ExifTool -fast2 | ${R_ET}x | >= 70x | $(verdict "$R_ET >= 70") |"
    echo "| Kelvaro / Exiv2 batched | ${R_EX}x | >= 3x | $(verdict "$R_EX >= 3") |"
    echo "| Kelvaro / floor | ${R_FLOOR} % | >= 12.5 % | $(verdict "$R_FLOOR >= 12.5") |"
    echo "| Kelvaro, the first $LARGE_FILES files padded to 25 MiB (sparse; $LARGE_PASSES scans per sample) | $K_LARGE_RATE files/s = **${R_LARGE} %** of the same $LARGE_FILES files unpadded, scanned the same way, in turn with them ($K_SAME_RATE files/s); ${R_LARGE_ALL} % of the 20,000-file scan's rate, since each short scan carries a scan's fixed cost (thread, connection, 11 indexes) | >= 90 % | $(verdict "$R_LARGE >= 90") |"
    echo "| Peak memory growth of the scan (VmHWM after - before, $((RUNS + 1)) scans) | $HWM MB | <= 16 MB | $(verdict "$HWM <= 16") |"
    echo "| updateCharts() over $(c rows) rows (every statistic's controller + date chart data), median of $RUNS | $CHART_MS ms | < 400 ms | $(verdict "$CHART_MS < 400") |"
    echo "| A filter change over $(c rows) rows (one maker and one year, $(c filter_photos) photos kept): the shown tab with the status line and the Data tab, timed with each of the 16 statistics, the date chart and the calendar shown in turn, median of those medians of $RUNS (slowest tab: $(c filter_shown_tab_slowest), $(c filter_shown_tab_slowest_ms) ms); the other tabs are drawn when shown | $(c filter_shown_tab_median_ms) ms | < 400 ms | $(verdict "$(c filter_shown_tab_slowest_ms) < 400") |"
    echo "| The same filter change, then every tab shown in turn / every tab drawn in the change itself, median of $RUNS | $(c filter_all_tabs_ms) ms / $(c filter_every_tab_at_once_ms) ms | | |"
    echo "| Compare mode over $(c rows) rows (that filter compared with the year before, $(c compare_photos_b) photos in period B): the shown tab with both periods, timed with each tab shown in turn, median of those medians of $RUNS (slowest tab: $(c compare_shown_tab_slowest), $(c compare_shown_tab_slowest_ms) ms) | $(c compare_shown_tab_median_ms) ms | < 600 ms | $(verdict "$(c compare_shown_tab_slowest_ms) < 600") |"
    echo "| Compare mode turned on, then every tab shown in turn, median of $RUNS | $(c compare_all_tabs_ms) ms | | |"
    echo "| kelvaro-stats --format csv over the $SMALL_FILES files (process start to exit, every statistic), median of $RUNS | $STATS_S s = **${R_STATS} %** of a process's first scan with the worker ($(field first_s "$SCAN_SMALL") s; each kelvaro-stats run is one) plus every statistic's statement over its rows ($STATISTICS_MS ms) | <= 110 % | $(verdict "$R_STATS <= 110") |"
    echo "| Building the statistic indexes over $(c rows) rows (the column indexes of both tables and the grouped statistics' range indexes; the scan builds them on its thread when its rows are in, so they are part of the scan's time, not of updateCharts()) | $(c index_ms) ms | | |"
    echo "| Stopping a scan with $(field rows "$STOP") rows stored: from the stop request (interruption, quit, wait) to the emptied table, when the window handles events again; median of $RUNS | $(field median_ms "$STOP") ms (runs $(field runs_ms "$STOP" | tr ',' ' ')) | | |"
    echo "| updateCharts() by part (ms, each made alone on its own views, median of $RUNS) | $PARTS | | |"
    echo "| Live chart objects after 1 refresh ($(c count_rows) rows) | $LIVE_1 | | |"
    echo "| Live chart objects after $(c refreshes) refreshes | $LIVE_N | no growth beyond the kept grouped focal-length controller and its model ($KEPT each) | $(verdict "$LIVE_GROWTH <= 0") |"
    echo "| Cold page cache: walk alone (listing, patterns, file check; only the files' pages are dropped, directories stay cached) | $(cold cold_walk files_per_s) files/s | | |"
    echo "| Cold floor: open, read 16 KiB, close, 1 thread / 64 threads | $COLD_F1 / $COLD_F64 files/s | | |"
    echo "| Cold scan, 1 reader (sequential) / default pool of $DEFAULT_READERS | $COLD_SEQ / **$COLD_DEF files/s** | | |"
    echo "| Cold scan, default pool / 1 reader | ${R_COLD_SEQ}x | >= 3x | $(verdict "$R_COLD_SEQ >= 3") |"
    echo "| Cold scan, default pool / 64-thread floor | ${R_COLD_FLOOR} % | >= 60 % | $(verdict "$R_COLD_FLOOR >= 60") |"
    echo "| Cold scan files/s by pool size | $CURVE | | |"
    echo "| Warm scan, default pool / 1 reader (in turn) | ${R_WARM} % ($WARM_DEF / $WARM_1 files/s) | >= 95 % | $(verdict "$R_WARM >= 95") |"
    echo "| Peak memory growth of the default pool's cold scans (VmHWM) | $COLD_HWM MB | <= 16 MB | $(verdict "$COLD_HWM <= 16") |"
    echo "| Rows of every cold and warm scan, every pool size, identical to 1 reader's (order, ids, values) | $(cold rows identical) | yes | $([ "$(cold rows identical)" = yes ] && echo met || echo MISSED) |"
    BASE_LINE="$(grep 'library=samples' <<<"$WINDOW")"
    BASE_DB_KIB="$(field db_kib "$BASE_LINE")"
    BASE_PHOTOS="$(field photos "$BASE_LINE")"
    while read -r line; do
        w() { field "$1" "$line"; }
        [ "$(w library)" = samples ] && continue
        # The bound holds from 200,000 photos on; below, fixed costs weigh in the slope.
        target=" |"
        [ "$(w photos)" -ge 200000 ] && target="<= 500 B/photo | $(verdict "$(w growth_b) <= 500")"
        echo "| Window over $(w photos) photos: resident memory once the first scan is done and the chart is painted (VmRSS); growth per photo over the sample library's $BASE_PHOTOS | $(( $(w rss_kib) / 1024 )) MiB; **$(w growth_b) B/photo**, of which the photo database's pages $(calc '%.0f' "($(w db_kib) - $BASE_DB_KIB) * 1024 / ($(w photos) - $BASE_PHOTOS)") B | $target |"
        echo "| Window over $(w photos) photos: from the start of the first scan to the first painted chart (scan end $(w scan_ms) ms), and sorting the Data tab by file name over every row (a header click: SQL's ORDER BY and the ids read) up to its last row shown; timed under the other load on the machine | $(w first_chart_ms) ms; sort $(w sort_ms) ms | | |"
    done <<<"$WINDOW"
    echo "| Photo catalogue: rescan of the unchanged $SMALL_FILES files, warm: with the catalogue / without / walk + lstat floor | **$(cat_ catalogue_warm with_files_per_s)** / $(cat_ catalogue_warm without_files_per_s) / $(cat_ catalogue_warm floor_files_per_s) files/s | | |"
    echo "| Photo catalogue rescan / the scan without it, warm | ${CAT_SPEEDUP}x | >= 5x | $(verdict "$CAT_SPEEDUP >= 5") |"
    echo "| Photo catalogue rescan / lstat floor, warm | ${CAT_FLOOR} % | >= 25 % | $(verdict "$CAT_FLOOR >= 25") |"
    echo "| Photo catalogue: the same rescan with the photo files' pages dropped before each run: with / without / floor | **$(cat_ catalogue_cold with_files_per_s)** / $(cat_ catalogue_cold without_files_per_s) / $(cat_ catalogue_cold floor_files_per_s) files/s | | |"
    echo "| Photo catalogue rescan / the scan without it, cold | ${CAT_COLD_SPEEDUP}x | >= 5x | $(verdict "$CAT_COLD_SPEEDUP >= 5") |"
    echo "| Photo catalogue rescan / lstat floor, cold | ${CAT_COLD_FLOOR} % | >= 25 % | $(verdict "$CAT_COLD_FLOOR >= 25") |"
    echo "| First scan with an empty catalogue against the scan without one (median $(cat_ catalogue_first with_s) s / $(cat_ catalogue_first without_s) s) | ${CAT_FIRST} % slower | <= 15 % | $(verdict "$CAT_FIRST <= 15") |"
    echo "| Photo catalogue: processor time per scan (all threads, median) with / without it: warm rescan, cold rescan, first scan | $(cat_ catalogue_warm with_cpu_s) / $(cat_ catalogue_warm without_cpu_s) s, $(cat_ catalogue_cold with_cpu_s) / $(cat_ catalogue_cold without_cpu_s) s, $(cat_ catalogue_first with_cpu_s) / $(cat_ catalogue_first without_cpu_s) s | | |"
    echo "| Photo catalogue size on disk, $SMALL_FILES photos | $(cat_ catalogue_size bytes) bytes = $(cat_ catalogue_size bytes_per_photo) bytes per photo | | |"
    echo "| Photo catalogue, $HUGE_FILES files (hard links): rescan, warm | $(calc '%.2f' "$HUGE_FILES / $(cat_ catalogue_huge_warm with_files_per_s)") s ($(cat_ catalogue_huge_warm with_files_per_s) files/s; without it $(cat_ catalogue_huge_warm without_files_per_s) files/s; floor $(cat_ catalogue_huge_warm floor_files_per_s) files/s) | | |"
    echo "| Photo catalogue size on disk, $HUGE_FILES photos | $(cat_ catalogue_huge_size bytes) bytes = $(cat_ catalogue_huge_size bytes_per_photo) bytes per photo | | |"
    echo "| Machine | $(nproc) CPUs, $CPU; load average $LOAD_START at the start, $LOAD_END at the end | | |"
    echo
    echo "Runs (s): Kelvaro $(field runs_s "$SCAN_SMALL" | tr ',' ' '); 25 MiB ($LARGE_PASSES scans each) $(field runs_s "$SCAN_LARGE" | tr ',' ' '); the same files unpadded ($LARGE_PASSES scans each) $(field other_runs_s "$SCAN_LARGE" | tr ',' ' '); floor $(field runs_s "$FLOOR" | tr ',' ' '); kelvaro-stats $STATS_RUNS; ExifTool $EXIFTOOL_RUNS; Exiv2 $EXIV2_RUNS. updateCharts() (ms): $(c runs_ms | tr ',' ' ')."
    echo
    echo "Notes: warm page cache (one untimed warm-up run of each tool first). Kelvaro's time runs from doOperation()'s start to operationDone(), one worker thread, no GUI (QCoreApplication), main connection open as in the application, rows checked and deleted after every run. files/s = files / wall seconds. ExifTool is timed on the first $EXIFTOOL_FOLDERS folders only (it is slow); its files/s compares all the same. The chart figures come from the real MainWindow::updateCharts() (reached through the window's friend probe), built headless on the '$(c platform)' platform (no window shown, so nothing is painted): the date chart computes its rows ($(c date_rows) non-empty) but makes no 3-D graph there (graph made: $(c date_graph)). The table is filled through the window's main connection in one transaction; the directory tree's selection signals are blocked meanwhile, so that the file-system model's late loading starts no rescan that would empty it, and the row count is checked after the measurements. Live objects are counted with Qt's QObject creation hooks, after deferred deletions ran, over the first $(c count_rows) rows so that $(c refreshes) refreshes stay quick; the window deliberately never destroys the replaced grouped focal-length controller (it stays a child of the window), so one controller and its query model remain per refresh by design."
} >"$TABLE"

echo
cat "$TABLE"
