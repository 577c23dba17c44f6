#!/usr/bin/env bash
# Builds the Windows installer (scripts/make-installer.sh) and checks it under Wine in a fresh
# prefix: a silent install into C:\Program Files\Norvale lays out the files, the shortcut and the
# uninstall entry; a silent uninstall removes them and leaves the settings file, Norvale's data
# and a backup; an uninstall from a folder holding nothing else removes the folder too.
set -euo pipefail
cd "$(dirname "$0")/.."
started=$SECONDS

bash scripts/make-installer.sh
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:[A-Z]*=//p' build/mingw/CMakeCache.txt)
setup="$PWD/build/installer/norvale-backup-$version-setup.exe"

scratch=$(mktemp -d)
export WINEPREFIX="$scratch/prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
trap 'wineserver -k 2>/dev/null || true; rm -rf "$scratch"' EXIT
# Wine's background services keep the first command's output open: send it nowhere.
wineboot -i >/dev/null 2>&1
wineserver -w
run() { wine "$@" >/dev/null 2>&1 </dev/null; wineserver -w; }
key='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\NorvaleBackup'
entry() { wine reg query "$key" /v "$1" 2>/dev/null </dev/null | tr -d '\r' | sed -n "s/^ *$1 *REG_[A-Z]* *//p"; }

failures=0
fail() {
    echo "  FAIL: $*"
    failures=$((failures + 1))
}
ok() { echo "  ok: $*"; }

dir="$WINEPREFIX/drive_c/Program Files/Norvale"
shortcut="$WINEPREFIX/drive_c/ProgramData/Microsoft/Windows/Start Menu/Programs/Norvale Backup.lnk"
installed=(norvale-backup.exe "NV BU tool.chm" FILECOPY.AVI "Uninstall Norvale Backup.exe")

echo "Silent install of $(basename "$setup"), $(stat -c %s "$setup") bytes:"
before=$failures
run "$setup" /S '/D=C:\Program Files\Norvale'
cmp -s build/mingw/src/norvale-backup.exe "$dir/norvale-backup.exe" || fail "the program differs"
cmp -s "build/dev/src/NV BU tool.chm" "$dir/NV BU tool.chm" || fail "the help file differs"
cmp -s assets/install/FILECOPY.AVI "$dir/FILECOPY.AVI" || fail "the copy clip differs"
[ -f "$dir/Uninstall Norvale Backup.exe" ] || fail "no uninstaller"
[ -f "$shortcut" ] || fail "no Start-menu shortcut"
[ "$(entry DisplayName)" = "Norvale Backup" ] || fail "DisplayName is '$(entry DisplayName)'"
[ "$(entry DisplayVersion)" = "$version" ] || fail "DisplayVersion is '$(entry DisplayVersion)'"
[ "$(entry QuietUninstallString)" = '"C:\Program Files\Norvale\Uninstall Norvale Backup.exe" /S' ] ||
    fail "QuietUninstallString is '$(entry QuietUninstallString)'"
[ $failures -eq $before ] && ok "files, shortcut and uninstall entry"

echo "Silent uninstall beside the settings, Norvale's data and a backup:"
before=$failures
printf '[Basic settings]\r\nDriveTarget=E:\r\n' >"$dir/NVbackuptool.ini"
echo ledger >"$dir/NORVALE.DAT"
mkdir -p "$dir/Backup2026-11-16" && echo ledger >"$dir/Backup2026-11-16/NORVALE.DAT"
# _?= runs the uninstaller in place, so the wait covers its work.
run "$dir/Uninstall Norvale Backup.exe" /S '_?=C:\Program Files\Norvale'
for name in "${installed[@]}"; do
    [ ! -e "$dir/$name" ] || fail "$name is left"
done
[ ! -e "$shortcut" ] || fail "the shortcut is left"
[ -z "$(entry DisplayName)" ] || fail "the uninstall entry is left"
for name in NVbackuptool.ini NORVALE.DAT Backup2026-11-16/NORVALE.DAT; do
    [ -f "$dir/$name" ] || fail "$name is gone"
done
[ $failures -eq $before ] && ok "only what the installer put there is gone"

echo "Install into an empty folder, then uninstall as Apps does:"
before=$failures
run "$setup" /S '/D=C:\Leeg\Norvale'
run "$WINEPREFIX/drive_c/Leeg/Norvale/Uninstall Norvale Backup.exe" /S
# The uninstaller works from a copy in the temporary folder; the wait above may end before it.
for _ in $(seq 20); do
    [ -e "$WINEPREFIX/drive_c/Leeg/Norvale" ] || break
    sleep 0.5
done
[ ! -e "$WINEPREFIX/drive_c/Leeg/Norvale" ] || fail "the emptied folder is left"
[ $failures -eq $before ] && ok "the emptied folder is gone"

elapsed=$((SECONDS - started))
if [ $failures -gt 0 ]; then
    echo "installer-check: $failures check(s) failed (${elapsed} s)" >&2
    exit 1
fi
echo "installer-check: $(basename "$setup") passes (${elapsed} s)"
