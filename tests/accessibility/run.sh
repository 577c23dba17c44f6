#!/usr/bin/env bash
# Runs the accessibility check. Usage: run.sh PROGRAM VERSION
# Exits 77 (skipped) when a tool it needs is missing.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
# pyatspi comes with Debian's Python, which a python3 earlier on the PATH may not be.
python=/usr/bin/python3
launcher=/usr/libexec/at-spi-bus-launcher

skip() {
    echo "SKIP: $1 is not installed"
    exit 77
}
[ -x "$python" ] && "$python" -c 'import pyatspi' 2>/dev/null || skip python3-pyatspi
[ -x "$launcher" ] || skip at-spi2-core
command -v dbus-daemon >/dev/null && command -v dbus-send >/dev/null || skip dbus
command -v Xvfb >/dev/null || skip xvfb

exec "$python" "$here/check_accessibility.py" --launcher "$launcher" "$@"
