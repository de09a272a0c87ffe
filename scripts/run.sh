#!/usr/bin/env bash
# Installs what is missing, builds Kelvaro (release), writes the synthetic sample library on first
# use and starts the application on it. Extra arguments are directories to open instead.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
export CCACHE_BASEDIR="$PWD"
cmake --preset release
# Only what this command starts: the program and the sample library writer.
cmake --build --preset release -j "$(nproc)" --target kelvaro kelvaro-make-samples

if [ $# -eq 0 ]; then
    library="$PWD/samples-library"
    if [ ! -d "$library" ]; then
        ./build/release/tools/make-samples/kelvaro-make-samples "$library"
    fi
    # One directory per year: all of them are selected, so the first scan covers the library.
    set -- "$library"/*/
fi
exec ./build/release/app/kelvaro "$@"
