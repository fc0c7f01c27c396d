#!/usr/bin/env bash
# Gives a command a display of its own with three screens, and a session bus; both end with it.
set -euo pipefail
numbers=$(mktemp)
Xvfb -displayfd 6 -screen 0 1366x768x24 -screen 1 1024x600x24 -screen 2 3840x2160x24 -nolisten tcp -noreset \
  6>"$numbers" 2>/dev/null &
server=$!
trap 'kill "$server"; rm -f "$numbers"' EXIT
for _ in $(seq 600); do [ -s "$numbers" ] && break; kill -0 "$server"; sleep 0.05; done
DISPLAY=":$(cat "$numbers")" dbus-run-session -- "$@"
