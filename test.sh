#!/usr/bin/env bash
# Installs what is missing, builds one preset and runs all its tests.
#   ./test.sh [release|debug|asan|tsan] [ctest arguments...]
set -euo pipefail
cd "$(dirname "$0")"

preset=release
case "${1:-}" in
release | debug | asan | tsan)
  preset=$1
  shift
  ;;
esac

tools/install-packages.sh
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" "$@"
