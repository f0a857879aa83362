#!/usr/bin/env bash
# Sets up, builds and starts Lumora.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh"
build=${LUMORA_BUILD:-$root/build}
# Until the program's windows exist, show a sample form as form text.
exec "$build/bin/lumora-convert" -t -o - "$root/samples/Sample1.dfm"
