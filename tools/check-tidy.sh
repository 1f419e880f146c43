#!/usr/bin/env bash
# Runs clang-tidy over all our code, or over the files given. Needs ./test.sh to have built before.
set -euo pipefail
cd "$(dirname "$0")/.."

files=("$@")
if [ "${#files[@]}" -eq 0 ]; then
  mapfile -t files < <(git ls-files '*.cpp' | grep -v '^tests/')
fi
printf '%s\n' "${files[@]}" |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/release --quiet
