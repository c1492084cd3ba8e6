#!/usr/bin/env bash
# Makes the Debian packages of a build, installs them into a root folder of their own, runs what they bring, removes
# them, and finds nothing left.
#
#   tests/package/debian.sh <build folder> <work folder>
set -euo pipefail
build=$1
work=$2
source=$(cd "$(dirname "$0")/../.." && pwd)

fail() {
    printf 'debian.sh: %s\n' "$*" >&2
    exit 1
}

rm -rf "$work"
mkdir -p "$work/system/var/lib/dpkg/"{info,updates,triggers}
touch "$work/system/var/lib/dpkg/"{status,available}
(cd "$build" && cpack -G DEB -B "$work/packages" >"$work/cpack.log") || fail "$(cat "$work/cpack.log")"

packages=("$work"/packages/*.deb)
names=()
for package in "${packages[@]}"; do
    names+=("$(dpkg-deb --field "$package" Package)")
    [ -n "$(dpkg-deb --field "$package" Depends)" ] || fail "$package needs nothing"
done
[ "${names[*]}" = "libstyles-dev libstyles1 styles-tools" ] || fail "the packages are ${names[*]}"

# The system's libraries are not packages of that root.
root_dpkg() {
    dpkg --root="$work/system" --force-not-root --force-depends --force-script-chrootless "$@" >>"$work/dpkg.log" 2>&1 ||
        fail "dpkg $1: $(cat "$work/dpkg.log")"
}
root_dpkg --install "${packages[@]}"

for file in usr/bin/styles-inspect usr/lib/libstyles.so.1 usr/lib/libstyles.so usr/include/styles/Styles.h \
    usr/lib/pkgconfig/styles.pc usr/lib/cmake/styles/stylesConfig.cmake usr/share/doc/styles/README.md; do
    [ -e "$work/system/$file" ] || fail "$file was not installed"
done
compgen -G "$work/system/usr/share/gdb/auto-load/usr/lib/libstyles.so.*-gdb.py" >/dev/null || fail "gdb finds no printers"
data=$source/examples/inspect/data
"$work/system/usr/bin/styles-inspect" --schema "$data/drawing-schema.json" "$data/drawing-sheet.json" list >"$work/list"
grep -q 'Hauptstraße' "$work/list" || fail "styles-inspect lists no road"

root_dpkg --purge "${names[@]}"
left=$(find "$work/system" -path "$work/system/var" -prune -o -type f -print -o -type l -print)
[ -z "$left" ] || fail "left behind: $left"
