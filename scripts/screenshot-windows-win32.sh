#!/usr/bin/env bash
# Takes the Windows program's screenshots under Wine into docs/screenshots/windows: the main
# window, the copy window and the restore wizard, each cropped to its window. They are taken
# while tests/win32/smoke.sh drives the program, which waits for each.
set -euo pipefail
cd "$(dirname "$0")/.."
command -v import >/dev/null || bash scripts/install-deps.sh imagemagick
out=docs/screenshots/windows
shots="$PWD/build/mingw/shots"
rm -rf "$shots"
mkdir -p "$shots" "$out"
NV_SHOTS="Z:${shots//\//\\}" bash tests/win32/smoke.sh &
smoke=$!
while kill -0 "$smoke" 2>/dev/null; do
    for request in "$shots"/*.req; do
        [ -e "$request" ] || continue
        name="$(basename "$request" .req)"
        DISPLAY=":$(cat build/mingw/smoke/display)" import -window root \
            -crop "$(cat "$request")" +repage "$out/$name.png"
        echo "Taken: $out/$name.png"
        mv "$request" "$shots/$name.done"
    done
    sleep 0.1
done
wait "$smoke"
