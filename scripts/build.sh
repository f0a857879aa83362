#!/usr/bin/env bash
# Configures and builds Lumora in build/ (or the folder given as $LUMORA_BUILD).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${LUMORA_BUILD:-$root/build}
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build "$build" -j"$(nproc)"
