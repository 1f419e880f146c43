#!/usr/bin/env bash
# Runs a command on a display of its own that has a window manager, for what only those decide:
# which window gets the keyboard and which one is on top.
#   tests/support/with-display.sh COMMAND...
set -euo pipefail

folder=$(mktemp -d)
started=()
end_started() {
  local i
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do
    kill "${started[i]}" 2>/dev/null || true
    wait "${started[i]}" 2>/dev/null || true
  done
  rm -rf "$folder"
}
trap end_started EXIT

# wait_for COMMAND...: until the command succeeds.
wait_for() {
  local until=$((SECONDS + 60))
  until "$@" >/dev/null 2>&1; do
    [ "$SECONDS" -lt "$until" ] || { echo "Waited in vain for: $*" >&2; exit 1; }
    sleep 0.05
  done
}

: >"$folder/display"
# A server that starts over when its last client leaves turns away who comes in that moment.
Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp -noreset 3>"$folder/display" 2>/dev/null &
started+=("$!")
wait_for test -s "$folder/display"
export DISPLAY=:$(cat "$folder/display")
manager=$(dirname "$0")/../../tools/window-manager.sh
HOME=$folder XDG_CONFIG_HOME=$folder "$manager" run >/dev/null 2>&1 &
started+=("$!")
wait_for "$manager" ready

unset WAYLAND_DISPLAY QT_SCALE_FACTOR
QT_QPA_PLATFORM=xcb "$@"
