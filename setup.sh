#!/usr/bin/env bash
# Installs the Debian packages the player, its tests and its asset tools need.
# Does nothing when everything is already there, so both run.sh and test.sh
# can call it on every invocation.
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  libsdl1.2-dev libsdl-mixer1.2-dev
  libglew-dev libglu1-mesa-dev libgl1-mesa-dri libpng-dev
  libvorbis-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth xdotool x11-utils
  vorbis-tools
  libfreetype-dev fonts-dejavu-core
  ffmpeg
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "setup: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then
  SUDO="sudo"
fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
