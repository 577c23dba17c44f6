#!/usr/bin/env bash
# Builds the program, makes a demo install beside the sources and starts the program on it:
# demo/Norvale holds the program with sample production files, demo/stick is drive E:.
# With --fresh the demo starts over from scratch.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"

# Only what the program needs; the tests' packages (MinGW, Wine, GoogleTest) stay out.
bash scripts/install-deps.sh --demo
cmake --preset package >/dev/null
cmake --build --preset package -j2

demo="$root/demo"
[ "${1:-}" = "--fresh" ] && rm -rf "$demo"
program="$demo/Norvale"
mkdir -p "$program" "$demo/stick"

# Sample production files; existing ones (and the settings file) are left as they are.
source scripts/lib/sample-files.sh
write_sample_files "$program"

# A new demo backs up to its stick: the settings file starts with DriveTarget=E:, in the bytes
# the program writes itself (CR LF); the program adds the other keys at its first start.
if [ ! -e "$program/NVbackuptool.ini" ]; then
    printf '[Basic settings]\r\nDriveTarget=E:\r\n' >"$program/NVbackuptool.ini"
fi

# The program lives in the demo's program folder, as it would beside the host product.
install -m 0755 build/package/src/norvale-backup "$program/norvale-backup"
install -m 0644 "build/package/src/NV BU tool.chm" "$program/NV BU tool.chm"
if [ -d assets/install ]; then
    cp -r assets/install/. "$program/"
fi

echo "Demo install: $program (stick E: = $demo/stick)"
export NVBACKUP_DRIVES="E=$demo/stick"
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "No display: the program runs on a virtual display (xvfb-run), where nobody sees it."
    # The program tells its own process number, so that it can be stopped from elsewhere too;
    # the virtual display goes with it.
    exec xvfb-run -a bash -c 'echo "Stop it with Ctrl+C, or from elsewhere with: kill $$"
        exec "$0"' "$program/norvale-backup"
fi
echo "Starting the program; close its window to stop it."
exec "$program/norvale-backup"
