#!/usr/bin/env bash
# Cross-builds nvcore and its tests for Windows (preset mingw) and runs them under Wine.
# Works headless and as root; the Wine prefix is private to the build tree.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"

for tool in cmake ninja x86_64-w64-mingw32-g++-posix wine wineboot wineserver; do
    if ! command -v "$tool" >/dev/null; then
        echo "test-windows: $tool is missing (packages: cmake ninja-build g++-mingw-w64-x86-64-posix wine wine64)" >&2
        exit 2
    fi
done

export WINEPREFIX="$root/build/mingw/wineprefix"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
export WINEARCH=win64
# No window is ever shown, and none must be asked for.
unset DISPLAY WAYLAND_DISPLAY

cmake --preset mingw
cmake --build --preset mingw -j2

# The prefix is made once per build tree; a half-made one (no registry) is made again.
if [ ! -f "$WINEPREFIX/system.reg" ]; then
    echo "test-windows: creating Wine prefix $WINEPREFIX"
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    wineboot -i >/dev/null 2>&1 || true
    wineserver -w
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
        echo "test-windows: wineboot did not create the prefix" >&2
        exit 2
    fi
fi

# One server and one set of Wine's own background processes for the whole run, started here
# so that they do not hold on to the output pipes of the tests; stopped on the way out.
wineserver -p 30 || true
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
wineboot >/dev/null 2>&1 </dev/null || true

ctest --preset mingw -j2

# The installed program, driven from outside in a prefix and on a display of its own.
status=0
bash tests/win32/smoke.sh || status=$?
if [ "$status" -eq 77 ]; then
    echo "test-windows: the smoke test of the program was skipped (a tool is missing)"
elif [ "$status" -ne 0 ]; then
    exit "$status"
fi

# The installer and its uninstaller, which leaves the settings, Norvale's files and backups.
bash scripts/installer-check.sh
