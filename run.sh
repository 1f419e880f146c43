#!/usr/bin/env bash
# Installs what is missing, builds, and shows the main job: instruments live in one window.
# With a display it opens the program beside simulated instruments; without one it leaves a picture.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages.sh
cmake --preset release
cmake --build --preset release --target GX7100Group gx7100sim

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec tools/show-window.sh
else
  exec tools/make-picture.sh
fi
