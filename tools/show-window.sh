#!/usr/bin/env bash
# Opens the program on this display, with simulated instruments to connect to.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/simulated-instruments.sh

folder=$(mktemp -d)
trap 'end_started; rm -rf "$folder"' EXIT
start_instrument "$folder" 127.0.0.1 North home 1
start_instrument "$folder" 127.0.0.2 South text 2
start_instrument "$folder" 127.0.0.3 East entry 3
start_instrument "$folder" 127.0.0.4 West graphics 4

cat <<'TEXT'

Simulated instruments are running. In the window, choose "Add connection" (Ctrl+P),
type one of these addresses over "Other..." and press OK:

    127.0.0.1    menu
    127.0.0.2    text
    127.0.0.3    entry page
    127.0.0.4    graphics

Click the strip below a screen: its frame turns red, and the instrument gets what you type.
Close the window to end everything.

TEXT
"$bin/GX7100Group"
