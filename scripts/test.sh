#!/usr/bin/env bash
# Installs what is missing, checks the formatting, builds and runs every test: the normal build
# (optimised, warnings as errors), the installation and the Debian package
# (scripts/check-install.sh), then the AddressSanitizer + UndefinedBehaviorSanitizer build. Every
# check runs even when an earlier one fails; the summary names each, skipped tests are listed with
# their reasons, and the exit status is non-zero when anything failed.
#
#   KELVARO_SKIP_ASAN=1  runs only the first build's suite.
#   KELVARO_STRICT=1     (CI sets it) also runs the tests that involve threads, timers and
#                        displays three times over (ctest --repeat until-fail:3) and the whole
#                        first suite once more pinned to one CPU, so that a test that needs one
#                        thread to outrun another fails before it lands.
set -uo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh || exit 1

jobs=$(nproc)
# Compiler results are cached by path relative to the checkout, so that another clone (CI's)
# reuses them.
export CCACHE_BASEDIR="$PWD"
timing_sensitive='^(tst_scan|tst_app|tst_app_gl|tst_robustness|tst_charts3d)$'

# The reasons of the tests that CTest's last run in the preset's build skipped.
print_skips() {
    local log="build/$1/Testing/Temporary/LastTest.log"
    [ -f "$log" ] || return 0
    grep -h '^SKIPPED:' "$log" | sort -u | sed 's/^/  skipped: /'
}

run_suite() {
    local preset=$1 status=0
    cmake --preset "$preset" && cmake --build --preset "$preset" -j "$jobs" || return 1
    ctest --preset "$preset" -j "$jobs" || status=1
    print_skips "$preset"
    if [ "${KELVARO_STRICT:-0}" = 1 ]; then
        echo "== $preset: the timing-sensitive tests, three times"
        ctest --preset "$preset" -j "$jobs" -R "$timing_sensitive" --repeat until-fail:3 || status=1
        if [ "$preset" = ci ]; then
            echo "== $preset: every test once more, pinned to one CPU"
            taskset -c 0 ctest --preset "$preset" || status=1
        fi
    fi
    return $status
}

summary=()
passed=0
failed=0
# check NAME COMMAND...: runs the command and notes how it went.
check() {
    local name=$1
    shift
    echo "== $name"
    if "$@"; then
        summary+=("$name: passed")
        passed=$((passed + 1))
    else
        summary+=("$name: FAILED")
        failed=$((failed + 1))
    fi
}

check "formatting" bash scripts/check-format.sh
check "ci build and tests" run_suite ci
check "install and Debian package" bash scripts/check-install.sh
[ "${KELVARO_SKIP_ASAN:-0}" = 1 ] || check "asan build and tests" run_suite asan

echo
printf '%s\n' "${summary[@]}"
echo "Checks: $passed passed, $failed failed"
[ "$failed" = 0 ]
