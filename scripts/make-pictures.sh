#!/usr/bin/env bash
# Draws the program's pictures into assets/pictures/ with tools/draw_pictures: PNGs for the Qt
# program, window-icon.ico and BMPs for the Windows program.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset dev >/dev/null
cmake --build build/dev -j2 --target draw_pictures

out=assets/pictures
mkdir -p "$out"
QT_QPA_PLATFORM=offscreen build/dev/tools/draw_pictures "$out"

echo "Written to $out:"
for picture in "$out"/*.png "$out"/*.bmp "$out"/*.ico; do
    printf '  %-22s %7d bytes\n' "$(basename "$picture")" "$(stat -c %s "$picture")"
done
