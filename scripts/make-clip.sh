#!/usr/bin/env bash
# Draws the copy window's clip into assets/install/FILECOPY.GIF (the Qt program's) and
# FILECOPY.AVI (the Windows program's) with tools/draw_clip.
# NV_BUILD_DIR names an already configured build folder to use instead of the dev preset's.
set -euo pipefail
cd "$(dirname "$0")/.."

build="${NV_BUILD_DIR:-}"
if [ -z "$build" ]; then
    bash scripts/install-deps.sh
    cmake --preset dev >/dev/null
    build=build/dev
fi
cmake --build "$build" -j2 --target draw_clip

out=assets/install
mkdir -p "$out"
QT_QPA_PLATFORM=offscreen "$build/tools/draw_clip" "$out/FILECOPY.GIF" "$out/FILECOPY.AVI"
for clip in "$out/FILECOPY.GIF" "$out/FILECOPY.AVI"; do
    printf 'Written: %s, %d bytes\n' "$clip" "$(stat -c %s "$clip")"
done
