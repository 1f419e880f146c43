#!/usr/bin/env bash
# Runs the program under a virtual display as an operator would, and leaves a picture of it:
# four tiles connected to simulated instruments, one of them receiving what is typed.
#   tools/make-picture.sh [picture.png]
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/simulated-instruments.sh
. tools/virtual-desktop.sh

picture=${1:-build/demo/group-window.png}
mkdir -p "$(dirname "$picture")"
folder=$(mktemp -d)
trap 'end_started; rm -rf "$folder"' EXIT

own_settings "$folder"
start_display "$folder"
start_program
four_instruments "$folder"
wait_for 30 cursor_shot "$folder/shot.png"
cp "$folder/shot.png" "$picture"
echo "Picture: $(realpath "$picture")"
