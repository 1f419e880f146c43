#!/usr/bin/env bash
# Builds the Debian package twice, in two folders, at two times, in two languages and time zones and
# without the compiler's cache, and compares the two bit for bit.
#   packaging/check-reproducible.sh [folder]
set -euo pipefail
tree=$(cd "$(dirname "$0")/.." && pwd)
folder=${1:-$(mktemp -d)}
export CCACHE_DISABLE=1

mkdir -p "$folder"
(cd "$tree" && git ls-files -z --cached --others --exclude-standard |
  tar --null --create --files-from=- --ignore-failed-read) >"$folder/tree.tar"

# build NAME: the package that a copy of this tree in the folder NAME gives.
build() {
  rm -rf "${folder:?}/$1"
  mkdir -p "$folder/$1"
  tar --extract --touch --file "$folder/tree.tar" -C "$folder/$1"
  "$folder/$1/packaging/build-deb.sh" >"$folder/$1.log" 2>&1 ||
    { tail -n 40 "$folder/$1.log" >&2; exit 1; }
}

(umask 022 && LC_ALL=C.UTF-8 TZ=UTC build first)
(umask 077 && LC_ALL=de_DE.UTF-8 TZ=Pacific/Kiritimati build second/elsewhere/with-a-longer-name)

first=$(echo "$folder"/first/build/deb/package/*.deb)
second=$(echo "$folder"/second/elsewhere/with-a-longer-name/build/deb/package/*.deb)
sha256sum "$first" "$second"
if ! cmp "$first" "$second"; then
  mkdir -p "$folder/a" "$folder/b"
  dpkg-deb -R "$first" "$folder/a"
  dpkg-deb -R "$second" "$folder/b"
  diff -rq "$folder/a" "$folder/b" || true
  echo "The two packages differ; they are in $folder." >&2
  exit 1
fi
echo "The same tree gives the same package."
