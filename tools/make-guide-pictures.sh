#!/usr/bin/env bash
# Takes the pictures of the user guide: one of every window, from the program itself, used as an
# operator would use it. Needs root: the program runs on a machine of its own, with instruments on
# its network, a serial port, and the maker's server.
#   tools/make-guide-pictures.sh [folder]     default: docs/images
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" != --inside ]; then
  pictures=$(realpath "${1:-docs/images}")
  mkdir -p "$pictures"
  exec tools/two-hosts.sh "tools/$(basename "$0")" --inside "$pictures"
fi

pictures=$2
. tools/simulated-instruments.sh
. tools/virtual-desktop.sh
. tools/pictured-machine.sh
# Gone with this machine.
folder=/run/pictures
mkdir "$folder"
trap end_started EXIT

# keep TITLE NAME: the picture of a window, small, and the same whenever it shows the same.
keep() {
  local id
  id=$(window "$1")
  xdotool mousemove 1279 899
  sleep 0.5
  shot "$id" "$folder/shot.png"
  keep_file "$folder/shot.png" "$2"
}

keep_file() {
  convert "$1" -bordercolor '#a0a0a0' -border 1 -strip +dither -colors 256 -define png:compression-level=9 \
    -define png:exclude-chunks=all "$pictures/$2.png"
}

# press KEYS...: one after the other, as fast as an operator, to whatever window is in front.
press() {
  local key
  for key in "$@"; do
    xdotool key "$key"
    sleep 0.15
  done
}

# close_window TITLE
close_window() {
  local id
  id=$(window "$1")
  in_window "$id" key alt+F4
  wait_for 30 closed "$1"
}

# choose_of_screen N: the Nth entry of the context menu of the first tile's screen.
choose_of_screen() {
  local i
  xdotool windowactivate --sync "$main" mousemove --window "$main" 240 120 click 3
  sleep 0.5
  for ((i = 0; i < $1; ++i)); do press Down; done
  press Return
}

# choose_of_menu LETTER N: the Nth entry of the menu with that mnemonic.
choose_of_menu() {
  local i
  in_window "$main" key "alt+$1"
  sleep 0.5
  for ((i = 1; i < $2; ++i)); do press Down; done
  press Return
}

picture_connections() {
  local dialog
  announce_instruments
  in_window "$main" key --clearmodifiers ctrl+p
  dialog=$(window 'New Connection')
  # Announced instruments take a moment to be found.
  sleep 3
  in_window "$dialog" type --delay 10 'Tank farm'
  keep 'New Connection' new-connection-network
  # The two kinds are neighbours: from the network's button to the line's.
  press Tab Down
  keep 'New Connection' new-connection-serial
  close_window 'New Connection'
  withdraw_instruments
}

picture_windows_of_a_screen() {
  choose_of_screen 1
  keep Dialog colours
  close_window Dialog
  choose_of_screen 2
  keep 'Select Font' font
  close_window 'Select Font'
  choose_of_screen 3
  keep 'North@127.7.1.1' capture
  close_window 'North@127.7.1.1'
}

picture_chat() {
  in_window "$main" key --clearmodifiers ctrl+c
  local chat
  chat=$(window 'Chat Window')
  in_window "$chat" type --delay 10 'Please check the valve of tank 3'
  press Return
  sleep 1
  in_window "$chat" type --delay 10 'Thank you'
  keep 'Chat Window' chat
  close_window 'Chat Window'
}

picture_windows_of_the_menus() {
  choose_of_menu f 1
  keep 'Group Prefs' preferences
  close_window 'Group Prefs'
  choose_of_menu h 6
  sleep 2
  keep 'Checking for new software' update
  close_window 'Checking for new software'
  in_window "$main" key --clearmodifiers ctrl+k
  keep Keyboard keypad
}

# One tile with an instrument on the serial port, which sends a file.
picture_transfer() {
  local dialog chat
  head -c 90000 /dev/zero >"$folder/readings"
  "$bin/gx7100sim" --serial --name 'Well 7' --seed 21 --file "$folder/readings" >"$folder/serial" &
  started+=("$!")
  wait_for 30 grep -q /dev/pts "$folder/serial"
  ln -s "$(grep -o '/dev/pts/[0-9]*' "$folder/serial" | head -n 1)" /dev/ttyUSB0
  start_program
  in_window "$main" key --clearmodifiers ctrl+p
  dialog=$(window 'New Connection')
  in_window "$dialog" type --delay 10 'Well 7'
  press Tab Down Return
  wait_for 30 closed 'New Connection'
  sleep 1
  open_keys
  in_window "$main" key --clearmodifiers ctrl+c
  chat=$(window 'Chat Window')
  in_window "$chat" type --delay 10 send
  press Return
  close_window 'Chat Window'
  sleep 7
  keep 'GX7100Group 2.1' transfer
}

become_pictured_machine "$folder"
own_settings /home/operator
start_display "$folder"
start_server "$folder"
start_program
keep 'Latest GX-7100 News from VESTRA' news
close_window 'Latest GX-7100 News from VESTRA'
picture_connections
four_instruments "$folder"
wait_for 30 cursor_shot "$folder/shot.png"
keep_file "$folder/shot.png" group-window
picture_windows_of_a_screen
picture_chat
picture_windows_of_the_menus
stop_program
picture_transfer
ls -l "$pictures"
