#!/usr/bin/env bash
# Packs what is built and looks at the package as its users will: the desktop's own tools accept
# it, everything stands where it is looked for, and the programs in it run.
#   check-package.sh BUILD-FOLDER SOURCE-FOLDER WORK-FOLDER
set -euo pipefail
build=$1 source=$2 work=$3

fail() {
  echo "FAIL: $*" >&2
  exit 1
}

rm -rf "$work"
mkdir -p "$work"
SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -l "$source/packaging/linux/changelog" -S Timestamp)
export SOURCE_DATE_EPOCH
# pack NAME: in a folder of its own, for several checks may pack at once.
pack() {
  cpack --config "$build/CPackConfig.cmake" -B "$work/$1" >"$work/$1.log" 2>&1 ||
    { cat "$work/$1.log" >&2; fail "not packed"; }
}
(umask 022 && TZ=UTC pack cpack)
(umask 077 && TZ=Pacific/Kiritimati pack again)
package=$(echo "$work"/cpack/*.deb)
# The mask itself is in the wrapping, which packaging/build-deb.sh sees to.
for part in fsys ctrl; do
  cmp <(dpkg-deb --$part-tarfile "$package") <(dpkg-deb --$part-tarfile "$work"/again/*.deb) ||
    fail "it is another package the second time"
done

lintian --fail-on error,warning "$package" || fail "lintian has complaints"

root=$work/root
dpkg-deb -x "$package" "$root"
desktop-file-validate "$root"/usr/share/applications/*.desktop || fail "the desktop entry"
appstreamcli validate --no-net "$root"/usr/share/metainfo/*.xml || fail "the metainfo"

id=$(basename "$root"/usr/share/applications/*.desktop .desktop)
grep -q "<id>$id</id>" "$root"/usr/share/metainfo/*.xml || fail "the metainfo has another id"
grep -q "setDesktopFileName(QStringLiteral(\"$id\"))" "$source/app/main.cpp" ||
  fail "the program names another desktop entry"
icon=$(sed -n 's/^Icon=//p' "$root/usr/share/applications/$id.desktop")
for size in 16x16 22x22 24x24 32x32 48x48 64x64 128x128 256x256; do
  [ -s "$root/usr/share/icons/hicolor/$size/apps/$icon.png" ] || fail "no icon of $size"
done
[ -s "$root/usr/share/icons/hicolor/scalable/apps/$icon.svg" ] || fail "no scalable icon"

program=$(readlink -f "$root/usr/bin/GX7100Group")
[ -x "$program" ] || fail "the link leads nowhere"
guide=$(readlink -f "$(dirname "$program")/../../../GX7100Group_UserGuide.pdf")
[ -s "$guide" ] || fail "the guide is not where the program looks"
[ "$(head -c 5 "$guide")" = "%PDF-" ] || fail "the guide is no PDF"
pictures=$(grep -c '!\[' "$source/docs/guide/user-guide.md" || true)
[ "$(pdfimages -list "$guide" | grep -c ' image ')" -ge "$pictures" ] ||
  fail "the guide lacks pictures"
date=$(pdfinfo -isodates "$guide" | sed -n 's/^CreationDate: *//p')
for zone in UTC Pacific/Kiritimati; do
  TZ=$zone "$build/bin/guide2pdf" "$source/docs/guide/user-guide.md" "$work/guide.pdf" "$date" \
    2>/dev/null
  cmp "$guide" "$work/guide.pdf" || fail "the guide is another one in $zone"
done
"$source/tests/support/with-display.sh" "$source/tests/packaging/open-guide.sh" "$root" \
  "$work/guide" || fail "the guide does not open from the menu"

version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")
[ "$("$root/usr/bin/gx7100sim" --version | grep -o '[0-9.]*$')" = "$version" ] ||
  fail "the simulator does not run, or is of another version"
for page in GX7100Group gx7100sim; do
  zcat "$root/usr/share/man/man1/$page.1.gz" | grep -q "GX7100Group $version" ||
    fail "the manual page of $page is of another version"
done
dpkg-parsechangelog -l "$source/packaging/linux/changelog" -S Version | grep -qx "$version" ||
  fail "the changelog is of another version"

if grep -rqaF "$source" "$root"; then
  fail "the package tells where it was built"
fi
echo "All as it should be."
