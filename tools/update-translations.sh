#!/usr/bin/env bash
# Brings the translation files up to date with the texts in the sources: new texts are added
# unfinished, texts that are gone are dropped.
#   tools/update-translations.sh           then translate what it names, with Qt Linguist or by hand
#   tools/update-translations.sh --check   changes nothing; fails when there would be something to do
set -euo pipefail
cd "$(dirname "$0")/.."

# No interest in tools of Qt 5 that may be first in the path.
lupdate=$(command -v /usr/lib/qt6/bin/lupdate || command -v lupdate6 || command -v lupdate)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

find */ \( -name '*.cpp' -o -name '*.h' -o -name '*.ui' \) |
  grep -vE '^(bench|build|docs|fuzz|tests)/' | LC_ALL=C sort >"$folder/sources"

failed=0
for file in translations/gx7100group_*.ts; do
  updated=$folder/$(basename "$file")
  cp "$file" "$updated"
  # Without line numbers: the file changes with the texts only.
  "$lupdate" -silent -no-obsolete -tr-function-alias QT_TRANSLATE_NOOP+=operatorText \
    -disable-heuristic sametext -disable-heuristic similartext -locations none "@$folder/sources" -ts "$updated" \
    2>"$folder/complaints"
  if [ -s "$folder/complaints" ]; then
    cat "$folder/complaints" >&2
    failed=1
  fi
  if [ "${1:-}" != --check ]; then
    cp "$updated" "$file"
  elif ! diff -u "$file" "$updated"; then
    echo "$file does not have the texts of the sources: tools/update-translations.sh" >&2
    failed=1
  fi
  if grep -n -B 3 'type="unfinished"' "$updated"; then
    echo "$file: these texts are not translated" >&2
    failed=1
  fi
done
exit "$failed"
