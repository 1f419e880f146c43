#!/usr/bin/env bash
# Runs the program under a virtual display as an operator would, and leaves a picture of it:
# four tiles connected to simulated instruments, one of them receiving what is typed.
#   tools/make-picture.sh [picture.png]
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/simulated-instruments.sh

picture=${1:-build/demo/group-window.png}
mkdir -p "$(dirname "$picture")"
folder=$(mktemp -d)
trap 'end_started; rm -rf "$folder"' EXIT

# Nobody's settings are touched, and a window without tiles is where the story begins.
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_CACHE_HOME=$folder/cache
export XDG_DATA_HOME=$folder/data XDG_RUNTIME_DIR=$folder/run
mkdir -p "$XDG_CONFIG_HOME/VESTRA" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
printf '[group]\ncount=0\n' >"$XDG_CONFIG_HOME/VESTRA/group7100.conf"
unset WAYLAND_DISPLAY QT_QPA_PLATFORM QT_SCALE_FACTOR
export LC_ALL=C.UTF-8

start_display() {
  : >"$folder/display"
  # A server that starts over when its last client leaves turns away who comes in that moment.
  Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$folder/display" 2>/dev/null &
  started+=("$!")
  wait_for 30 test -s "$folder/display"
  export DISPLAY=:$(cat "$folder/display")
  openbox >/dev/null 2>&1 &
  started+=("$!")
  wait_for 30 eval "xprop -root _NET_SUPPORTING_WM_CHECK | grep -q '#'"
}

# window TITLE: the identifier of the visible window of that title.
window() {
  wait_for 30 xdotool search --onlyvisible --name "^$1\$"
  xdotool search --onlyvisible --name "^$1\$" | head -n 1
}

# in_window WINDOW XDOTOOL-COMMAND...
in_window() {
  xdotool windowactivate --sync "$1"
  shift
  xdotool "$@"
}

# add_connection LABEL ADDRESS INSTRUMENT: the dialog, by keyboard alone.
add_connection() {
  in_window "$main" key --clearmodifiers ctrl+p
  local dialog
  dialog=$(window 'New Connection')
  in_window "$dialog" type --delay 10 "$1"
  xdotool key Tab Tab ctrl+a
  xdotool type --delay 10 "$2"
  xdotool key Return
  wait_for 30 eval "! xdotool search --onlyvisible --name '^New Connection\$'"
  wait_for 30 grep -q ^Connected "$folder/$3.log"
}

shot() { import -silent -window "$main" "$folder/shot.png"; }

# pixels COLOUR: how many of that colour the window shows now.
pixels() {
  shot
  convert "$folder/shot.png" -fill black +opaque "$1" -fill white -opaque "$1" \
    -format '%[fx:int(mean*w*h+0.5)]' info:
}

# The blinking cursor of the entry page, dark grey.
cursor_shows() { [ "$(pixels '#808080')" -ge 20 ]; }

frame_red='#ff0000'

# Clicks the strip below the screen of the third tile, which stands in the lower left.
open_keys_of_third_tile() {
  local before up
  eval "$(xdotool getwindowgeometry --shell "$main" | grep -E '^(WIDTH|HEIGHT)=')"
  before=$(pixels "$frame_red")
  for up in 40 50 60 30 70; do
    xdotool mousemove --window "$main" $((WIDTH / 4)) $((HEIGHT - up)) click 1
    sleep 0.2
    [ "$(pixels "$frame_red")" -le $((before + 500)) ] || return 0
  done
  echo "No tile took the click" >&2
  return 1
}

start_display
start_instrument "$folder" 127.7.1.1 Alpha home 11
start_instrument "$folder" 127.7.1.2 Bravo text 12
start_instrument "$folder" 127.7.1.3 Charlie entry 13
start_instrument "$folder" 127.7.1.4 Delta graphics 14
"$bin/GX7100Group" &
started+=("$!")
main=$(window 'GX7100Group 2.1')

add_connection North 127.7.1.1 Alpha
add_connection South 127.7.1.2 Bravo
add_connection East 127.7.1.3 Charlie
add_connection West 127.7.1.4 Delta
open_keys_of_third_tile
in_window "$main" type --delay 20 'Site 14, borehole B'
sleep 1
wait_for 30 cursor_shows
cp "$folder/shot.png" "$picture"
echo "Picture: $(realpath "$picture")"
