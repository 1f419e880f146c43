#!/usr/bin/env bash
# Builds the Debian package from this tree. The same tree gives the same package, bit for bit,
# wherever and whenever it is built.
#   packaging/build-deb.sh [build folder]    leaves the package in <build folder>/package/
set -euo pipefail
tree=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$tree/build/deb}
# It is part of the package how readable its parts were.
umask 022

"$tree/tools/install-packages.sh"
SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -l "$tree/packaging/linux/changelog" -S Timestamp)
export SOURCE_DATE_EPOCH
cmake -S "$tree" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DGX_TESTS=OFF \
  -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_CXX_FLAGS="-ffile-prefix-map=$tree=."
cmake --build "$build"
cpack --config "$build/CPackConfig.cmake" -B "$build/package"
ls "$build"/package/*.deb
