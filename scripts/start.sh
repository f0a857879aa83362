#!/usr/bin/env bash
# Sets up, builds and starts Lumora.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh"
build=${LUMORA_BUILD:-$root/build}
# Until the program's windows exist, show a sample form as form text, and draw it as
# its window into a picture.
"$build/bin/lumora-convert" -t -o - "$root/samples/Sample1.dfm"
if [ -x "$build/bin/lumora-form-png" ]; then
  QT_QPA_PLATFORM=offscreen "$build/bin/lumora-form-png" "$build/Sample1.png" "$root/samples/Sample1.dfm" 2>/dev/null &&
    echo "The sample form drawn as its window: $build/Sample1.png"
fi
