#!/usr/bin/env bash
# Builds the Debian package from a build folder, unpacks it into a temporary root with
# dpkg -x and checks it: the file list (package-files.txt plus the guide's pictures), the
# control fields, that it names no web address while the product has no site, and that
# its dependencies name the package behind every library the program links and the
# plugins Qt loads at run time.
# Usage: check-package.sh <build folder> <source folder>
set -euo pipefail
build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() { echo "FAIL: $*" >&2; exit 1; }

if ! cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/out" >"$work/cpack.log" 2>&1; then
    cat "$work/cpack.log" >&2
    fail "cpack could not build the package"
fi
debs=("$work"/out/arena-steward_*.deb)
[ ${#debs[@]} -eq 1 ] && [ -f "${debs[0]}" ] || fail "expected one arena-steward_*.deb, found: ${debs[*]}"
deb=${debs[0]}
echo "built $(basename "$deb")"

dpkg -x "$deb" "$work/root"
{
    cat "$source/packaging/package-files.txt"
    for picture in "$source"/docs/guide/images/*; do
        echo "/usr/share/doc/arena-steward/guide/images/$(basename "$picture")"
    done
} | LC_ALL=C sort >"$work/expected"
(cd "$work/root" && find . \( -type f -o -type l \) | sed 's#^\.##' | LC_ALL=C sort) >"$work/actual"
diff -u "$work/expected" "$work/actual" || fail "the package's files differ from the expected list (- expected, + packaged)"

field() { dpkg-deb -f "$deb" "$1"; }
[ "$(field Package)" = arena-steward ] || fail "Package is '$(field Package)'"
[ "$(field Version)" = "$(sed -n 's/^project(ArenaSteward VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")" ] \
    || fail "Version '$(field Version)' is not the project's version"
[ "$(field Architecture)" = "$(dpkg --print-architecture)" ] || fail "Architecture is '$(field Architecture)'"
# No web address leads anywhere yet: no Homepage, and no links or screenshots in the metainfo.
[ -z "$(field Homepage)" ] || fail "Homepage '$(field Homepage)' names a site that doesn't exist"
metainfo="$work/root/usr/share/metainfo/io.github.arena_steward.ArenaSteward.metainfo.xml"
if grep -nE '<url|<screenshot' "$metainfo" >&2; then
    fail "the metainfo names addresses of a site that doesn't exist"
fi
depends=$(field Depends)
echo "Depends: $depends"
names=$(echo "$depends" | tr ',|' '\n\n' | sed 's/(.*)//; s/[[:space:]]//g' | grep -v '^$')
has() { echo "$names" | grep -qx "$1"; }
for needed in qt6-qpa-plugins qt6-image-formats-plugins xdg-utils; do
    has "$needed" || fail "Depends lacks $needed"
done

program="$work/root/usr/bin/arena-steward"
[ -x "$program" ] || fail "the program is not executable"
libraries=$(objdump -p "$program" | awk '/NEEDED/ { print $2 }')
[ -n "$libraries" ] || fail "objdump found no libraries in the program"
for library in $libraries; do
    owners=$(dpkg -S "*/$library" 2>/dev/null | cut -d: -f1 | tr ',' '\n' | sed 's/[[:space:]]//g' | sort -u)
    [ -n "$owners" ] || fail "no installed package holds $library"
    found=no
    for owner in $owners; do
        if has "$owner"; then found=yes; fi
    done
    [ $found = yes ] || fail "$library comes from $(echo $owners) which Depends does not name"
done
echo "the package holds $(wc -l <"$work/actual") files and declares the owners of: $(echo $libraries)"
