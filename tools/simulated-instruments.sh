# Sourced by the scripts that show the program: four simulated instruments on loopback addresses,
# ended with the script that started them.

bin=build/release/bin
started=()

# Ends only what was started here, the latest first: a program goes before its display.
end_started() {
  local i
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do
    kill "${started[i]}" 2>/dev/null || true
    wait "${started[i]}" 2>/dev/null || true
  done
}

# wait_for SECONDS COMMAND...: until the command succeeds.
wait_for() {
  local until=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    if [ "$SECONDS" -ge "$until" ]; then
      echo "Waited in vain for: $*" >&2
      return 1
    fi
    sleep 0.05
  done
}

# start_instrument FOLDER ADDRESS NAME PAGE SEED
start_instrument() {
  # In English, whatever the user reads: its lines are looked for.
  LANGUAGE= LC_ALL=C.UTF-8 "$bin/gx7100sim" --listen "$2" --name "$3" --page "$4" --seed "$5" >"$1/$3.log" 2>&1 &
  started+=("$!")
  local pid=$!
  wait_for 30 eval "grep -q Listening '$1/$3.log' || ! kill -0 $pid"
  grep -q Listening "$1/$3.log" || { cat "$1/$3.log" >&2; return 1; }
}
