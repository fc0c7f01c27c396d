#!/usr/bin/env bash
# run.sh <command>... <folder>: runs a tour with its own display of three screens, session bus and scratch folder. They
# are removed afterwards, and only the pictures are copied to <folder>, so that two tours don't interfere.
set -euo pipefail
scratch=$(mktemp -d)
numbers=$scratch/numbers
Xvfb -displayfd 6 -screen 0 1366x768x24 -screen 1 1024x600x24 -screen 2 3840x2160x24 -nolisten tcp -noreset \
  6>"$numbers" 2>/dev/null &
server=$!
folder=${!#}
keep() {
  kill "$server"
  mkdir -p "$folder"
  cp "$scratch"/tour/*.png "$folder" || true
  rm -rf "$scratch"
}
trap keep EXIT
for _ in $(seq 600); do [ -s "$numbers" ] && break; kill -0 "$server"; sleep 0.05; done
DISPLAY=":$(cat "$numbers")" dbus-run-session -- "${@:1:$#-1}" "$scratch/tour"
