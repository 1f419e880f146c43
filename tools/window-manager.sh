#!/usr/bin/env bash
# A window manager for the display of the environment, and when it is there.
#   tools/window-manager.sh run     becomes it
#   tools/window-manager.sh ready   succeeds, with a yes, once it manages windows
# It takes over the display, and says so, before that: a window that comes in between stays hidden.
set -euo pipefail

case ${1-} in
run) exec openbox --startup 'xprop -root -f GX_MANAGED 8s -set GX_MANAGED yes' ;;
ready) xprop -root GX_MANAGED | grep yes ;;
*)
  echo "usage: $0 run|ready" >&2
  exit 2
  ;;
esac
