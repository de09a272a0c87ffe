#!/usr/bin/env bash
# Checks Kelvaro installed as a desktop program: builds the release preset, installs it into a
# scratch prefix and validates the desktop entry and the AppStream metainfo there, makes the
# Debian package, installs it (as root with apt-get; otherwise unpacked into a scratch root),
# runs the installed programs without a display, and runs lintian on the package (errors fail,
# warnings are printed). A package this script installed is removed again at the end.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
export CCACHE_BASEDIR="$PWD"
# What is installed, without the tests and benchmarks.
cmake --preset release -DKELVARO_BUILD_TESTS=OFF -DKELVARO_BUILD_BENCH=OFF
cmake --build --preset release -j "$(nproc)"

scratch=$(mktemp -d)
installed_by_us=0
cleanup() {
    if [ "$installed_by_us" = 1 ]; then
        DEBIAN_FRONTEND=noninteractive apt-get remove -y -qq kelvaro </dev/null >/dev/null
    fi
    rm -rf "$scratch"
}
trap cleanup EXIT

fail() {
    echo "check-install: $*" >&2
    exit 1
}

echo "== cmake --install into a scratch prefix"
prefix="$scratch/prefix"
cmake --install build/release --prefix "$prefix" >/dev/null
app_id=org.kelvaro.Kelvaro
for file in bin/kelvaro bin/kelvaro-exif bin/kelvaro-stats \
    "share/applications/$app_id.desktop" "share/metainfo/$app_id.metainfo.xml" \
    share/man/man1/kelvaro.1.gz share/man/man1/kelvaro-exif.1.gz \
    share/man/man1/kelvaro-stats.1.gz \
    "share/icons/hicolor/scalable/apps/$app_id.svg"; do
    [ -f "$prefix/$file" ] || fail "not installed: $file"
done
for size in 16 32 48 64 128 256 512; do
    icon="$prefix/share/icons/hicolor/${size}x${size}/apps/$app_id.png"
    file "$icon" | grep -q "PNG image data, $size x $size," || fail "not a $size px PNG: $icon"
done
# Nothing installed may lead back to this checkout or its build tree.
if grep -rl --binary-files=text "$PWD" "$prefix"; then
    fail "the files above name the source or build tree"
fi
desktop-file-validate "$prefix/share/applications/$app_id.desktop"
appstreamcli validate --no-net "$prefix/share/metainfo/$app_id.metainfo.xml"

echo "== cpack -G DEB"
(cd build/release && cpack -G DEB >/dev/null)
version=$(sed -n 's/^project(Kelvaro VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
deb="$PWD/build/release/kelvaro_${version}_amd64.deb"
[ -f "$deb" ] || fail "no package $deb"
dpkg-deb --field "$deb" Package Version Section Maintainer Depends

echo "== installing the package"
if [ "$(id -u)" = 0 ]; then
    if dpkg-query -W -f='${Status}' kelvaro 2>/dev/null | grep -q 'install ok installed'; then
        fail "a kelvaro package is installed already; remove it first"
    fi
    installed_by_us=1
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "$deb" </dev/null >/dev/null
    bin=/usr/bin
else
    # Without root the package is only unpacked; its dependencies are the build's own.
    dpkg -x "$deb" "$scratch/root"
    bin="$scratch/root/usr/bin"
fi

echo "== running the installed programs without a display"
version_line=$(env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$bin/kelvaro" --version)
[ "$version_line" = "Kelvaro $version" ] || fail "kelvaro --version said: $version_line"
echo "$version_line"
build/release/tools/make-samples/kelvaro-make-samples "$scratch/samples" >/dev/null
photo=$(find "$scratch/samples" -name '*.CR3' -o -name '*.cr3' | sort | head -n 1)
[ -n "$photo" ] || fail "no sample photo written"
line=$(env -u DISPLAY "$bin/kelvaro-exif" "$photo")
echo "$line"
[[ "$line" == "$(basename "$photo");"* && "$line" != *"not recognised" ]] \
    || fail "kelvaro-exif did not read $photo"
set +e
errors=$("$bin/kelvaro-exif" "$scratch/nonexistent.jpg" 2>&1 >/dev/null)
code=$?
set -e
[ "$code" = 1 ] && [[ "$errors" == *"nonexistent.jpg: No such file or directory"* ]] \
    || fail "kelvaro-exif on a missing file: exit $code, '$errors'"

# The headless statistics count the sample library's photos, in every statistic alike.
makers=$(env -u DISPLAY XDG_CONFIG_HOME="$scratch/config" "$bin/kelvaro-stats" --format csv \
    --statistic Maker --statistic Weekday "$scratch/samples" \
    | awk -F';' 'NR > 1 { n[$1] += $3 } END { print n["Maker"] "/" n["Weekday"] }')
echo "kelvaro-stats counted $makers photos (Maker/Weekday)"
[ "$makers" = 588/588 ] || fail "kelvaro-stats counted $makers photos, not 588/588"

echo "== lintian"
report=$(lintian "$deb" 2>&1 || true)
[ -z "$report" ] || echo "$report"
if grep -q '^E:' <<<"$report"; then
    fail "lintian found errors"
fi
echo "check-install: all checks passed"
