#!/usr/bin/env bash
# Installs the Debian 12 packages Kelvaro needs to build, run and test, and unpacks the
# QDarkStyle style sheet from Debian's python3-qdarkstyle into .deps/ (without the package's
# Python and Qt 5 dependencies). Safe to run again: it installs only what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
    cmake ninja-build g++ ccache clang-format
    qt6-base-dev qt6-charts-dev qt6-datavisualization-dev qt6-declarative-dev
    libqt6opengl6-dev libqt6sql6-sqlite libsqlite3-dev libgl1-mesa-dri
    xvfb xauth
    qt6-svg-dev
    desktop-file-utils appstream lintian dpkg-dev file
)
if [ "${KELVARO_WITH_FUZZ:-0}" = 1 ]; then
    packages+=(clang-14 libclang-rt-14-dev)
fi

sudo_cmd=()
if [ "$(id -u)" != 0 ]; then
    sudo_cmd=(sudo)
fi

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" </dev/null
fi

style_dir=.deps/qdarkstyle
if [ ! -f "$style_dir/usr/lib/python3/dist-packages/qdarkstyle/dark/darkstyle.qss" ] \
    && [ ! -f /usr/lib/python3/dist-packages/qdarkstyle/dark/darkstyle.qss ]; then
    echo "Unpacking the QDarkStyle style sheet from Debian's python3-qdarkstyle"
    mkdir -p "$style_dir"
    download_dir=$(mktemp -d)
    chmod 777 "$download_dir"
    (cd "$download_dir" && apt-get download python3-qdarkstyle </dev/null 2>/dev/null \
        || { "${sudo_cmd[@]}" apt-get update -qq && apt-get download python3-qdarkstyle </dev/null; })
    dpkg-deb -x "$download_dir"/python3-qdarkstyle_*.deb "$style_dir"
    rm -rf "$download_dir"
fi
