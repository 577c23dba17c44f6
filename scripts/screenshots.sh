#!/usr/bin/env bash
# Takes the screenshots in docs/screenshots: the main window with the splash over it, the main
# window alone and the About window, at 100 % and, in docs/screenshots/200, at 200 %.
# Each scale runs on a throw-away demo install, a private X display and AT-SPI bus.
# NV_PROGRAM=/path/to/norvale-backup takes that program instead of building the dev preset.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"
# pyatspi comes with Debian's Python, which a python3 earlier on the PATH may not be.
python=/usr/bin/python3
launcher=/usr/libexec/at-spi-bus-launcher

bash scripts/install-deps.sh
missing=()
for p in imagemagick x11-utils; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done
if [ ${#missing[@]} -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    export DEBIAN_FRONTEND=noninteractive
    $sudo apt-get update -q
    $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

program="${NV_PROGRAM:-}"
if [ -z "$program" ]; then
    cmake --preset dev >/dev/null
    cmake --build build/dev -j2 --target norvale-backup
    program="$root/build/dev/src/norvale-backup"
fi

work="$(mktemp -d -t nv-shots-XXXXXX)"
pids=()
program_pid=""
stop_program() {
    [ -n "$program_pid" ] || return 0
    kill "$program_pid" 2>/dev/null || true
    wait "$program_pid" 2>/dev/null || true
    program_pid=""
}
stop_all() {
    local pid
    stop_program
    for pid in "${pids[@]}"; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    pids=()
}
trap 'stop_all; rm -rf "$work"' EXIT
trap 'exit 1' INT TERM

# --- The demo install: sample production files in C:\Norvale, a settings file with E: as the
# target drive, and a stick with one earlier backup on it.

make_install() {
    local dir="$1" name i
    mkdir -p "$dir/c/Norvale" "$dir/stick/Backup 16-11-2026"
    for name in NV_Ledger01.mdb NV_Lists97.mdb panels.ini NV_Entity.NVD Nota.ini NV.ini \
        Refresh.ini NV_stock.NVD; do
        for i in 1 2 3 4 5; do
            printf 'Demo %s regel %d\r\n' "$name" "$i"
        done >"$dir/c/Norvale/$name"
        cp "$dir/c/Norvale/$name" "$dir/stick/Backup 16-11-2026/"
    done
    install -m 0755 "$program" "$dir/c/Norvale/norvale-backup"
}

# Lets the program write its settings file once, then points it at the stick.
prepare_settings() {
    local dir="$1" settings="$1/c/Norvale/NVbackuptool.ini"
    start_program "$dir"
    wait_for grep -qs '^DriveTarget=' "$settings"
    stop_program
    sed -i -e 's/^DriveTarget=C:\r$/DriveTarget=E:\r/' \
        -e 's/^LastBackup=.*\r$/LastBackup=16-11-2026\r/' "$settings"
    if ! grep -q $'^DriveTarget=E:\r$' "$settings"; then
        echo "No DriveTarget line in $settings" >&2
        exit 1
    fi
}

# --- The display, the buses and the program

# Without -noreset the server resets when its last client leaves, and refuses the next for a
# moment.
start_display() {
    local dir="$1" width="$2" height="$3" fd
    exec {fd}>"$dir/display"
    Xvfb -displayfd "$fd" -screen 0 "${width}x${height}x24" -nolisten tcp -noreset 2>/dev/null &
    pids+=($!)
    exec {fd}>&-
    wait_for test -s "$dir/display"
    export DISPLAY=":$(cat "$dir/display")"
}

start_buses() {
    local dir="$1"
    dbus-daemon --session --nofork --print-address=1 >"$dir/bus" 2>/dev/null &
    pids+=($!)
    wait_for test -s "$dir/bus"
    DBUS_SESSION_BUS_ADDRESS="$(head -n 1 "$dir/bus")"
    export DBUS_SESSION_BUS_ADDRESS
    "$launcher" --launch-immediately --a11y=1 >/dev/null 2>&1 &
    pids+=($!)
}

start_program() {
    local dir="$1"
    (
        cd "$dir/c/Norvale"
        export NVBACKUP_DRIVES="C=$dir/c;E=$dir/stick" XDG_RUNTIME_DIR="$dir/runtime"
        export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_ACCESSIBILITY=1 QT_QPA_PLATFORM=xcb
        mkdir -p -m 0700 "$XDG_RUNTIME_DIR"
        exec ./norvale-backup
    ) &
    program_pid=$!
}

# --- The windows on the screen, as X has them

# Prints "ID<tab>TITLE<tab>WIDTHxHEIGHT+X+Y" for each top-level window of the program. Qt makes
# a window's X window when it first shows it; the splash and the About window are destroyed on
# closing.
program_windows() {
    xwininfo -root -children | awk '/\("norvale-backup" / {
        line = substr($0, index($0, "\"") + 1)
        title = substr(line, 1, index(line, "\": (") - 1)
        split($(NF - 1), size, "+")
        print $1 "\t" title "\t" size[1] $NF
    }'
}

# Prints "ID GEOMETRY" of the window titled $1; with "other", of one that is neither the main
# window nor the splash.
window_of() {
    program_windows | awk -F '\t' -v want="$1" -v main="$main_title" -v splash="$splash_title" '
        (want == "other" && $2 != main && $2 != splash) || $2 == want { print $1, $3; exit }'
}

shown() {
    local title
    for title in "$@"; do
        [ -n "$(window_of "$title")" ] || return 1
    done
}
gone() { [ -z "$(window_of "$1")" ]; }

# Whether window $1 (an id or "root"), or the part $2 of it, has painted: it is black until then.
painted() {
    local mean
    mean="$(import -window "$1" ${2:+-crop "$2"} -format '%[fx:mean]' info:)"
    awk -v mean="$mean" 'BEGIN { exit !(mean > 0.05) }'
}

# Waits up to ten seconds for the test in $@ to pass.
wait_for() {
    local i
    for i in $(seq 200); do
        "$@" && return 0
        sleep 0.05
    done
    echo "Gave up waiting for: $*" >&2
    return 1
}

# The smallest rectangle holding both geometries.
union() {
    local w1 h1 x1 y1 w2 h2 x2 y2
    IFS='x+' read -r w1 h1 x1 y1 <<<"$1"
    IFS='x+' read -r w2 h2 x2 y2 <<<"$2"
    local left=$((x1 < x2 ? x1 : x2)) top=$((y1 < y2 ? y1 : y2))
    local right=$((x1 + w1 > x2 + w2 ? x1 + w1 : x2 + w2))
    local bottom=$((y1 + h1 > y2 + h2 ? y1 + h1 : y2 + h2))
    echo "$((right - left))x$((bottom - top))+$left+$top"
}

# The whole screen into $1 and, cropped to geometry $2, into $3. import reads each window where
# xwd -root would leave the splash black (Xvfb keeps a save-under window out of the root's image).
capture() {
    import -window root "miff:$1"
    convert "miff:$1" -crop "$2" +repage "$3"
    echo "  $3 ($2)"
}

# Works the menu item named $1 through AT-SPI, as a screen reader would.
press_menu_item() {
    "$python" - "$program_pid" "$1" <<'EOF'
import sys
import time

import pyatspi
from gi.repository import GLib

pid, wanted = int(sys.argv[1]), sys.argv[2]
desktop = pyatspi.Registry.getDesktop(0)
item = None
deadline = time.monotonic() + 20
while item is None and time.monotonic() < deadline:
    for app in desktop:
        if app is not None and app.get_process_id() == pid:
            item = pyatspi.findDescendant(
                app, lambda acc: acc.getRoleName() == "menu item" and acc.name == wanted)
    if item is None:
        time.sleep(0.2)
if item is None:
    sys.exit(f"The program shows no menu item {wanted!r}.")
# A menu item that opens a modal window answers only when that window has closed.
pyatspi.setTimeout(500, 500)
try:
    item.queryAction().doAction(0)
except GLib.GError:
    pass
EOF
}

# --- The screenshots

main_title="Norvale Backup & Restore "
splash_title="Norvale Backup"

shoot() {
    local scale="$1" out="$2" dir="$work/scale$1" started main_id main splash_id splash id about
    echo "Screenshots at $((scale * 100)) % in $out"
    mkdir -p "$out"
    make_install "$dir"
    start_display "$dir" $((1280 * scale)) $((1024 * scale))
    start_buses "$dir"
    export QT_SCALE_FACTOR="$scale"
    prepare_settings "$dir"

    start_program "$dir"
    started=$(date +%s%N)
    wait_for shown "$main_title" "$splash_title"
    read -r main_id main <<<"$(window_of "$main_title")"
    read -r splash_id splash <<<"$(window_of "$splash_title")"
    wait_for painted "$main_id"
    wait_for painted "$splash_id"
    echo "  (splash taken $((($(date +%s%N) - started) / 1000000)) ms after the start)"
    capture "$dir/splash.miff" "$(union "$main" "$splash")" "$out/splash.png"

    wait_for gone "$splash_title"
    # Time for the main window to repaint where the splash stood.
    sleep 0.3
    capture "$dir/main.miff" "$main" "$out/main-window.png"

    press_menu_item About &
    pids+=($!)
    wait_for shown other
    read -r id about <<<"$(window_of other)"
    wait_for painted "$id"
    capture "$dir/about.miff" "$about" "$out/about.png"
    stop_all
}

shoot 1 "$root/docs/screenshots"
shoot 2 "$root/docs/screenshots/200"
