#!/usr/bin/env bash
# Remakes every generated asset of the default production: pictures, models,
# camera paths, binary data and music. Each tool writes the same bytes on
# every run, so a clean checkout remade by this script shows no change.
#
#   tools/make-assets.sh                 writes into resources/
#   tools/make-assets.sh /tmp/out        writes into /tmp/out/{graphics,objects,misc,music}/
#
# The tools are taken from build/tools/ (or from $KVL_BUILD_DIR/tools/); build
# them first with: cmake --build build --target imagegen modelgen pathgen musicgen
set -euo pipefail
cd "$(dirname "$0")/.."

root="${1:-resources}"
tools="${KVL_BUILD_DIR:-build}/tools"
for tool in imagegen modelgen pathgen musicgen; do
  if [ ! -x "$tools/$tool" ]; then
    echo "make-assets: $tools/$tool is missing; build the tools first" >&2
    exit 1
  fi
done
mkdir -p "$root/graphics" "$root/objects" "$root/misc" "$root/music"

# Pictures of every scene.
"$tools/imagegen" "$root/graphics"

# Models.
"$tools/modelgen" "$root/objects/"

# Camera paths and binary data.
"$tools/pathgen" -o "$root/misc/camera.ani"

# Scene assets beyond the pictures, one block per scene group.
# -- grid and sun scenes

# -- logo and smoke scenes

# -- transitions, planet and shaded object scenes

# -- city and title scenes

# -- credits and end scenes


# Music.
"$tools/musicgen" "$root/music/kvltheme.ogg"
