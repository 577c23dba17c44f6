#!/usr/bin/env bash
# Builds the Windows installer build/installer/norvale-backup-<version>-setup.exe: the Windows
# program (mingw preset), the help file (dev preset) and makensis over installer/norvale-backup.nsi.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw -j2 --target norvale-backup
cmake --preset dev >/dev/null
cmake --build --preset dev -j2 --target help_file

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:[A-Z]*=//p' build/mingw/CMakeCache.txt)
program=build/mingw/src/norvale-backup.exe
help="build/dev/src/NV BU tool.chm"
clip=assets/install/FILECOPY.AVI
icon=assets/pictures/window-icon.ico
out=build/installer/norvale-backup-$version-setup.exe

missing=0
for file in "$program" "$help" "$clip" "$icon"; do
    if [ ! -s "$file" ]; then
        echo "make-installer: $file is missing" >&2
        missing=1
    fi
done
[ -n "$version" ] || { echo "make-installer: no project version in build/mingw" >&2; missing=1; }
[ $missing -eq 0 ] || exit 1

mkdir -p build/installer
rm -f "$out"
# -WX: a warning (a file not found by a wildcard, an unused define) fails the build too.
makensis -V2 -WX -INPUTCHARSET UTF8 \
    "-DNV_VERSION=$version" \
    "-DNV_PROGRAM=$PWD/$program" \
    "-DNV_HELP=$PWD/$help" \
    "-DNV_CLIP=$PWD/$clip" \
    "-DNV_ICON=$PWD/$icon" \
    "-DNV_OUTFILE=$PWD/$out" \
    installer/norvale-backup.nsi
printf 'Written: %s, %d bytes\n' "$out" "$(stat -c %s "$out")"
