#!/usr/bin/env bash
# Runs the accessibility check on a private X display and AT-SPI bus (scripts/lib/display.sh).
# Usage: run.sh PROGRAM VERSION. Exits 77 (skipped) when a tool it needs is missing.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
# pyatspi comes with Debian's Python, which a python3 earlier on the PATH may not be.
python=/usr/bin/python3
source "$here/../../scripts/lib/display.sh"

skip() {
    echo "SKIP: $1 is not installed"
    exit 77
}
[ -x "$python" ] && "$python" -c 'import pyatspi' 2>/dev/null || skip python3-pyatspi
[ -x "$launcher" ] || skip at-spi2-core
command -v dbus-daemon >/dev/null && command -v dbus-send >/dev/null || skip dbus
command -v Xvfb >/dev/null || skip xvfb

dir="$(mktemp -d -t nv-a11y-session-XXXXXX)"
trap 'stop_session; rm -rf "$dir"' EXIT
trap 'exit 1' INT TERM
start_display "$dir" 1280 1024
start_buses "$dir"
"$python" "$here/check_accessibility.py" "$@"
