#!/usr/bin/env bash
# The Windows program on a demo install under Wine: builds the installer, installs the program
# silently into demo/wineprefix as a Windows user would (C:\Program Files\Norvale), puts sample
# production files beside it, makes demo/stick the removable drive E: and starts the program.
# With --fresh the demo prefix starts over from scratch.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"

bash scripts/install-deps.sh --demo
bash scripts/install-deps.sh g++-mingw-w64-x86-64-posix wine wine64 fonts-wine locales nsis
bash scripts/make-installer.sh >/dev/null
source scripts/lib/wine-prefix.sh
make_dutch_locale || echo "No Dutch locale here: the boxes' buttons speak English."

demo="$root/demo"
[ "${1:-}" = "--fresh" ] && rm -rf "$demo/wineprefix"
mkdir -p "$demo/stick"
export WINEPREFIX="$demo/wineprefix" WINEARCH=win64 WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=" LANG=nl_NL.UTF-8
[ -f "$WINEPREFIX/system.reg" ] || make_wine_prefix

# E: is a removable drive over demo/stick, as winecfg would make it; Wine reads it at its start.
wineserver -k 2>/dev/null || true
ln -sfn "$demo/stick" "$WINEPREFIX/dosdevices/e:"
printf '\n[Software\\\\Wine\\\\Drives] %s\n"e:"="removable"\n' "$(date +%s)" >>"$WINEPREFIX/system.reg"
[ -f "$demo/stick/.windows-label" ] || echo DEMOSTICK >"$demo/stick/.windows-label"

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:[A-Z]*=//p' build/mingw/CMakeCache.txt)
wine "build/installer/norvale-backup-$version-setup.exe" /S '/D=C:\Program Files\Norvale' \
    >/dev/null 2>&1 </dev/null
wineserver -w
program="$WINEPREFIX/drive_c/Program Files/Norvale"
# Norvale's own files, as the finance program's install has them; existing ones stay.
source scripts/lib/sample-files.sh
write_sample_files "$program"

echo "Demo install: $program (stick E: = $demo/stick)"
run='wine "C:\\Program Files\\Norvale\\norvale-backup.exe" 2>/dev/null; wineserver -w'
if [ -z "${DISPLAY:-}" ]; then
    echo "No display: the program runs on a virtual display (xvfb-run), where nobody sees it."
    exec xvfb-run -a -s "-screen 0 1280x1024x24" bash -c "echo \"Stop it with Ctrl+C, or: kill \$\$\"; $run"
fi
echo "Starting the program; close its window to stop it."
exec bash -c "$run"
