#!/usr/bin/env bash
# The Windows program as its user meets it: installed by its installer into a fresh Wine prefix
# on a private X display, backing up to a removable drive E:, restoring through the wizard,
# telling a pulled stick, adding a file through the open dialog, opening its help and refusing a
# second start; driven from outside by smoke_driver.exe, with the files compared here. Exits 77, skipped, when a tool it needs is missing.
# NV_SHOTS=<folder> (in Windows form) has the driver ask for screenshots of three windows there.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
cd "$root"
started=$(date +%s)

for tool in wine wineboot wineserver Xvfb makensis cmp; do
    if ! command -v "$tool" >/dev/null; then
        echo "smoke: skipped, $tool is missing" >&2
        exit 77
    fi
done
source scripts/lib/wine-prefix.sh
# The boxes speak Dutch (Ja, Nee) only in a Dutch locale.
if ! make_dutch_locale; then
    echo "smoke: skipped, the locale nl_NL.UTF-8 is missing and cannot be made" >&2
    exit 77
fi

bash scripts/make-installer.sh >/dev/null
cmake --build --preset mingw -j2 --target smoke_driver >/dev/null
installer="build/installer/norvale-backup-1.7.1-setup.exe"
driver="$root/build/mingw/tests/smoke_driver.exe"

work="$root/build/mingw/smoke"
rm -rf "$work"
mkdir -p "$work/stick" "$work/original"
export WINEPREFIX="$work/prefix" WINEARCH=win64 WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=" LANG=nl_NL.UTF-8 LC_ALL=nl_NL.UTF-8

Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$work/display" 2>/dev/null &
xvfb=$!
# A failure leaves the screen as it stood in build/mingw/smoke/failure.png.
trap '[ $? -eq 0 ] || import -window root "$work/failure.png" 2>/dev/null || true
    wineserver -k >/dev/null 2>&1 || true; kill $xvfb 2>/dev/null || true' EXIT
for _ in $(seq 100); do [ -s "$work/display" ] && break || sleep 0.1; done
export DISPLAY=":$(cat "$work/display")"

make_wine_prefix
# One server for the run; Wine's background processes start here, away from the output pipes.
wineserver -p 60 || true
wineboot >/dev/null 2>&1 </dev/null || true

wine "$installer" /S '/D=C:\Program Files\Norvale' </dev/null
program="$WINEPREFIX/drive_c/Program Files/Norvale"
[ -f "$program/norvale-backup.exe" ] || { echo "smoke: the installer left no program" >&2; exit 1; }
# The finance program's files in its folder, as a user's install has them.
while read -r name lines; do
    # Screenshots need a copy that lasts long enough to be seen.
    [ -z "${NV_SHOTS:-}" ] || lines=$((lines * 400))
    seq "$lines" | sed "s/.*/Smoke $name regel &: boeking &, bedrag & EUR\r/" >"$work/original/$name"
    cp "$work/original/$name" "$program/$name"
done < <(grep -v '^#' scripts/lib/sample-files.txt)
echo NVSTICK >"$work/stick/.windows-label"
mkdir -p "$WINEPREFIX/drive_c/Gegevens"
printf 'Kasboek\r\n' >"$WINEPREFIX/drive_c/Gegevens/Kasboek 2026.xls"

drive() { wine "$driver" "$@" </dev/null; }
windows_form() { echo "Z:${1//\//\\}"; }
exe='C:\Program Files\Norvale\norvale-backup.exe'
# A program under Program Files keeps its files in the user's application data.
production="$WINEPREFIX/drive_c/users/$(id -un)/AppData/Roaming/Norvale"

same() { # same <original> <copy> <what>
    if cmp -s "$1" "$2"; then echo "ok   $3"; else echo "FAIL $3" && exit 1; fi
}

drive backup "$exe" "$(windows_form "$work/stick")"
backups=("$work"/stick/Backup*)
[ ${#backups[@]} -eq 1 ] || { echo "FAIL one backup folder on E: (${backups[*]})"; exit 1; }
for file in "$work"/original/*; do
    same "$file" "${backups[0]}/${file##*/}" "backup holds ${file##*/}"
done
[ -f "${backups[0]}/NVbackuptool.ini" ] || { echo "FAIL backup holds the settings file"; exit 1; }

printf 'Gewijzigd na de backup\r\n' >"$production/NV.ini"
drive restore
same "$work/original/NV.ini" "$production/NV.ini" "the restore brought NV.ini back"

drive finish "$exe" "$(windows_form "$work/stick")"
settings="$production/NVbackuptool.ini"
for line in '[Basic settings]' 'DriveTarget=E:' \
    "BackUpfile1=C:\\users\\$(id -un)\\AppData\\Roaming\\Norvale\\NV_Ledger01.mdb" \
    'BackUpfile10=C:\Gegevens\Kasboek 2026.xls'; do
    grep -qxF "$line"$'\r' "$settings" || { echo "FAIL the settings file holds $line"; exit 1; }
done
echo "ok   the settings file names E: and the list"
echo "smoke: passed in $(($(date +%s) - started)) s"
