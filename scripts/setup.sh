#!/usr/bin/env bash
# Installs what building, running and testing Lumora needs on Debian, only what is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-image-formats-plugins libgl-dev
  libqscintilla2-qt6-dev unrtf
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  clang libclang-rt-dev
  fonts-liberation fonts-wine fonts-dejavu-core fonts-wqy-microhei
  xvfb xauth
  desktop-file-utils shared-mime-info libglib2.0-bin groff-base
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "setup: installing ${missing[*]}"
  sudo_cmd=()
  [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
  export DEBIAN_FRONTEND=noninteractive
  "${sudo_cmd[@]}" apt-get update -qq
  "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
else
  echo "setup: all packages present"
fi
