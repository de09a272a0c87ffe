#!/usr/bin/env bash
# Installs what is missing, checks the formatting, builds and runs every test: first the normal
# build (optimised, warnings as errors), then the AddressSanitizer + UndefinedBehaviorSanitizer
# build. Set KELVARO_SKIP_ASAN=1 to run only the first.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
bash scripts/check-format.sh

jobs=$(nproc)
# Compiler results are cached by path relative to the checkout, so that another clone (CI's)
# reuses them.
export CCACHE_BASEDIR="$PWD"
cmake --preset ci
cmake --build --preset ci -j "$jobs"
ctest --preset ci -j "$jobs"

if [ "${KELVARO_SKIP_ASAN:-0}" != 1 ]; then
    cmake --preset asan
    cmake --build --preset asan -j "$jobs"
    ctest --preset asan -j "$jobs"
fi
