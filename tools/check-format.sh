#!/usr/bin/env bash
# Fails when a C++ file is not as clang-format would write it, or a text file has trailing spaces.
set -euo pipefail
cd "$(dirname "$0")/.."

list() {
  if git rev-parse --git-dir >/dev/null 2>&1; then
    git ls-files -z --cached --others --exclude-standard -- "$@"
  else
    find . -path ./build -prune -o -type f \( -false $(printf ' -o -name %q' "$@") \) -print0
  fi
}

list '*.cpp' '*.h' | xargs -0 -r clang-format --dry-run --Werror
if list '*.cpp' '*.h' '*.sh' '*.txt' '*.cmake' | xargs -0 -r grep -nE '[[:space:]]+$'; then
  echo "trailing white space"
  exit 1
fi
