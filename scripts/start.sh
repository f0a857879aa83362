#!/usr/bin/env bash
# Sets up, builds and starts Lumora with a sample form opened. Without a display it runs
# Lumora under Xvfb instead and saves a screenshot of its windows.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh"
build=${LUMORA_BUILD:-$root/build}
sample="$root/samples/Sample1.dfm"

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  echo "start: Lumora with $sample"
  exec "$build/bin/lumora" "$sample"
fi

shot="$build/lumora-screenshot.png"
echo "start: there is no display here; running Lumora under Xvfb to take a screenshot"
xvfb-run -a -s "-screen 0 1280x800x24" bash -c '
  lumora=$1 sample=$2 screenshot=$3 shot=$4
  "$lumora" "$sample" &
  pid=$!
  "$screenshot" "$shot" 3000
  status=$?
  kill -TERM "$pid" 2>/dev/null || true
  wait "$pid" || true
  exit $status' start "$build/bin/lumora" "$sample" "$build/bin/lumora-screenshot" "$shot"
echo "start: a screenshot of Lumora's windows with $(basename "$sample") opened: $shot"
