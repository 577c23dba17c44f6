#!/usr/bin/env bash
# Builds the program, makes a demo install beside the sources and starts the program on it:
# demo/Norvale holds the program with sample production files, demo/stick is drive E:.
# With --fresh the demo starts over from scratch.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"

bash scripts/install-deps.sh
cmake --preset dev >/dev/null
cmake --build --preset dev -j2 --target norvale-backup

demo="$root/demo"
[ "${1:-}" = "--fresh" ] && rm -rf "$demo"
program="$demo/Norvale"
mkdir -p "$program" "$demo/stick"

# Sample production files; existing ones (and the settings file) are left as they are.
sample() {
    local name="$1" lines="$2"
    [ -e "$program/$name" ] && return 0
    for i in $(seq 1 "$lines"); do
        printf 'Demo %s regel %04d: boeking %d, bedrag %d,%02d EUR\r\n' "$name" "$i" "$i" $((i * 37 % 1000)) $((i % 100))
    done >"$program/$name"
}
while read -r name lines; do
    sample "$name" "$lines"
done < <(grep -v '^#' scripts/lib/sample-files.txt)

# The program lives in the demo's program folder, as it would beside the host product.
install -m 0755 build/dev/src/norvale-backup "$program/norvale-backup"
install -m 0644 "build/dev/src/NV BU tool.chm" "$program/NV BU tool.chm"
if [ -d assets/install ]; then
    cp -r assets/install/. "$program/"
fi

echo "Demo install: $program (stick E: = $demo/stick)"
export NVBACKUP_DRIVES="E=$demo/stick"
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "No display: starting under xvfb-run."
    exec xvfb-run -a "$program/norvale-backup"
fi
exec "$program/norvale-backup"
