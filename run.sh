#!/usr/bin/env bash
# Installs what is missing, builds, and plays a demoscript.
#   ./run.sh             plays resources/scripts/demoscript.txt
#   ./run.sh other.txt   plays resources/scripts/other.txt
# Without a display the player runs under Xvfb; without a sound card SDL's
# dummy audio driver stands in.
set -euo pipefail
cd "$(dirname "$0")"

./setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$(nproc)" --target kvldemo

if [ -z "${SDL_AUDIODRIVER:-}" ] && [ ! -e /dev/snd ] && [ ! -S /run/user/"$(id -u)"/pulse/native ]; then
  export SDL_AUDIODRIVER=dummy
fi

if [ -n "${DISPLAY:-}" ]; then
  exec ./build/kvldemo "$@"
else
  exec xvfb-run -a -s "-screen 0 1280x1024x24 +extension GLX +render -noreset" ./build/kvldemo "$@"
fi
