#!/usr/bin/env bash
# Installs Debian packages that are missing, with apt-get (through sudo when not root): the
# packages named, with --demo those the program needs to build and run (scripts/demo.sh), or
# without arguments those the build and all the tests need.
#   bash scripts/install-deps.sh [--demo | package...]
set -euo pipefail

if [ "${1:-}" = "--demo" ]; then
    packages=(
        cmake ninja-build g++ pkg-config
        qt6-base-dev qt6-base-dev-tools libgl-dev qt6-translations-l10n
        fp-utils libchm-dev libmd4c-dev libmd4c-html0-dev
    )
    # A machine without a display runs the program on a virtual one.
    [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && packages+=(xvfb xauth)
elif [ $# -gt 0 ]; then
    packages=("$@")
else
    packages=(
        cmake ninja-build g++ pkg-config
        qt6-base-dev qt6-base-dev-tools libgl-dev qt6-translations-l10n
        fp-utils libchm-dev libchm-bin libmd4c-dev libmd4c-html0-dev
        googletest libgtest-dev libgmock-dev
        g++-mingw-w64-x86-64-posix wine wine64 fonts-wine locales nsis
        xvfb xauth
        python3-pyatspi at-spi2-core dbus
        fusefat dosfstools
    )
fi

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
