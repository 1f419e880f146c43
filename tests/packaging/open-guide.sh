#!/usr/bin/env bash
# Opens the user guide from the help menu of an unpacked package, as an operator does, and looks at
# what the desktop is asked to open.
#   open-guide.sh PACKAGE-ROOT WORK-FOLDER       on a display with a window manager
set -euo pipefail
root=$1 work=$2

mkdir -p "$work/tools" "$work/home"
export HOME=$work/home XDG_CONFIG_HOME=$work/home/config XDG_CACHE_HOME=$work/home/cache
export XDG_DATA_HOME=$work/home/data XDG_RUNTIME_DIR=$work/home/run LANGUAGE= LC_ALL=C.UTF-8
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
# Stands in for the desktop's opener.
printf '#!/bin/sh\necho "$1" >"%s/asked"\n' "$work" >"$work/tools/xdg-open"
chmod +x "$work/tools/xdg-open"

PATH=$work/tools:$PATH "$root/usr/bin/GX7100Group" >"$work/program.log" 2>&1 &
program=$!
trap 'kill "$program" 2>/dev/null || true' EXIT
window=$(timeout 60 xdotool search --sync --onlyvisible --name '^GX7100Group [0-9.]*$' | head -n 1)

# The third entry. A key may come before the window is ready for it: asked until it is heard.
for _ in $(seq 30); do
  timeout 20 xdotool windowactivate --sync "$window" key --clearmodifiers Escape Escape alt+h
  sleep 0.3
  xdotool key --clearmodifiers Down Down Return
  for _ in $(seq 20); do
    [ ! -s "$work/asked" ] || break 2
    sleep 0.1
  done
done
asked=$(cat "$work/asked")
case $asked in
file://*/GX7100Group_UserGuide.pdf) ;;
*) echo "Something else is opened: $asked" >&2; exit 1 ;;
esac
[ "$(head -c 5 "${asked#file://}")" = "%PDF-" ] || { echo "No guide at $asked" >&2; exit 1; }

timeout 20 xdotool windowactivate --sync "$window" key --clearmodifiers ctrl+q
wait "$program"
