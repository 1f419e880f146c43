# Sourced by the scripts that take pictures of the program, after simulated-instruments.sh: a desktop
# without a screen, and the hands of an operator.

# own_settings FOLDER: from here on nobody's settings are touched, and the story begins with a
# window without tiles.
own_settings() {
  export HOME=$1 XDG_CONFIG_HOME=$1/.config XDG_CACHE_HOME=$1/.cache XDG_DATA_HOME=$1/.local/share
  export XDG_RUNTIME_DIR=$1/.run
  mkdir -p "$XDG_CONFIG_HOME/VESTRA" "$XDG_RUNTIME_DIR"
  chmod 700 "$XDG_RUNTIME_DIR"
  printf '[group]\ncount=0\n' >"$XDG_CONFIG_HOME/VESTRA/group7100.conf"
  unset WAYLAND_DISPLAY QT_QPA_PLATFORM QT_SCALE_FACTOR QT_STYLE_OVERRIDE LANGUAGE
  export LC_ALL=C.UTF-8
}

# start_display FOLDER
start_display() {
  : >"$1/display"
  # A server that starts over when its last client leaves turns away who comes in that moment.
  Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$1/display" 2>/dev/null &
  started+=("$!")
  wait_for 30 test -s "$1/display"
  export DISPLAY=:$(cat "$1/display")
  tools/window-manager.sh run >/dev/null 2>&1 &
  started+=("$!")
  wait_for 30 tools/window-manager.sh ready
}

# window TITLE: the identifier of the visible window of that title.
window() {
  wait_for 30 xdotool search --onlyvisible --name "^$1\$"
  xdotool search --onlyvisible --name "^$1\$" | head -n 1
}

# closed TITLE: whether there is no window of that title.
closed() { ! xdotool search --onlyvisible --name "^$1\$"; }

# in_window WINDOW XDOTOOL-COMMAND...
in_window() {
  xdotool windowactivate --sync "$1"
  shift
  xdotool "$@"
}

# start_program: and leaves its window's identifier in $main.
start_program() {
  "$bin/GX7100Group" &
  program=$!
  started+=("$program")
  main=$(window 'GX7100Group 2.1')
}

# stop_program: as when the desktop ends; nothing is stored.
stop_program() {
  kill "$program"
  wait "$program" || true
  wait_for 30 closed 'GX7100Group 2.1'
}

# add_connection LABEL ADDRESS LOG: the dialog, by keyboard alone.
add_connection() {
  in_window "$main" key --clearmodifiers ctrl+p
  local dialog
  dialog=$(window 'New Connection')
  in_window "$dialog" type --delay 10 "$1"
  xdotool key Tab Tab ctrl+a
  xdotool type --delay 10 "$2"
  xdotool key Return
  wait_for 30 closed 'New Connection'
  wait_for 30 grep -q ^Connected "$3"
}

# shot WINDOW FILE
shot() { import -silent -window "$1" "$2"; }

# pixels WINDOW COLOUR: how many of that colour the window shows now.
pixels() {
  import -silent -window "$1" png:- | convert png:- -fill black +opaque "$2" -fill white \
    -opaque "$2" -format '%[fx:int(mean*w*h+0.5)]' info:
}

frame_red='#ff0000'

# Clicks the strip below the screen of the tile that stands in the lower left.
open_keys() {
  local before up
  eval "$(xdotool getwindowgeometry --shell "$main" | grep -E '^(WIDTH|HEIGHT)=')"
  before=$(pixels "$main" "$frame_red")
  for up in 40 50 60 30 70; do
    xdotool mousemove --window "$main" $((WIDTH / 4)) $((HEIGHT - up)) click 1
    sleep 0.2
    [ "$(pixels "$main" "$frame_red")" -le $((before + 500)) ] || return 0
  done
  echo "No tile took the click" >&2
  return 1
}

# cursor_shot FILE: the main window while the blinking cursor of the entry page, dark grey, shows.
cursor_shot() {
  xdotool mousemove 1279 899
  shot "$main" "$1"
  [ "$(convert "$1" -fill black +opaque '#808080' -fill white -opaque '#808080' \
    -format '%[fx:int(mean*w*h+0.5)]' info:)" -ge 20 ]
}

# four_instruments FOLDER: four tiles, the third of which receives what is typed.
four_instruments() {
  start_instrument "$1" 127.7.1.1 Alpha home 11
  start_instrument "$1" 127.7.1.2 Bravo text 12
  start_instrument "$1" 127.7.1.3 Charlie entry 13
  start_instrument "$1" 127.7.1.4 Delta graphics 14
  add_connection North 127.7.1.1 "$1/Alpha.log"
  add_connection South 127.7.1.2 "$1/Bravo.log"
  add_connection East 127.7.1.3 "$1/Charlie.log"
  add_connection West 127.7.1.4 "$1/Delta.log"
  open_keys
  in_window "$main" type --delay 20 'Site 14, borehole B'
  sleep 1
}
