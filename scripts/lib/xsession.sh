# Shell functions for scripts that run the real program on a throw-away demo install under a
# private X display and AT-SPI bus, and read or work its windows. Source it from the repository
# root; it sets root, python, program and work, and ends what it started when the script exits.
# NV_PROGRAM=/path/to/norvale-backup takes that program instead of building the dev preset.

root="$PWD"
# pyatspi comes with Debian's Python, which a python3 earlier on the PATH may not be.
python=/usr/bin/python3
source scripts/lib/display.sh
atspi="$root/scripts/lib/atspi.py"

main_title="Norvale Backup & Restore "
splash_title="Norvale Backup"

# Installs what the scripts need beyond the build's own dependencies: ImageMagick, xwininfo
# (x11-utils) and xwd (x11-apps).
install_tools() {
    bash scripts/install-deps.sh
    bash scripts/install-deps.sh imagemagick x11-utils x11-apps
}

build_program() {
    program="${NV_PROGRAM:-}"
    [ -z "$program" ] || return 0
    cmake --preset dev >/dev/null
    cmake --build build/dev -j2 --target norvale-backup
    program="$root/build/dev/src/norvale-backup"
}

work="$(mktemp -d -t nv-shots-XXXXXX)"
# Helpers a script starts in the background, ended with the session.
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
    stop_session
}
trap 'stop_all; rm -rf "$work"' EXIT
trap 'exit 1' INT TERM

# --- The demo install: sample production files in C:\Norvale, a settings file with E: as the
# target drive, and a stick with one earlier backup on it.

mapfile -t sample_files < <(grep -v '^#' scripts/lib/sample-files.txt | cut -d ' ' -f 1)

make_install() {
    local dir="$1" name i
    mkdir -p "$dir/c/Norvale" "$dir/stick/Backup2026-11-16"
    for name in "${sample_files[@]}"; do
        for i in 1 2 3 4 5; do
            printf 'Demo %s regel %d\r\n' "$name" "$i"
        done >"$dir/c/Norvale/$name"
        cp "$dir/c/Norvale/$name" "$dir/stick/Backup2026-11-16/"
    done
    install -m 0755 "$program" "$dir/c/Norvale/norvale-backup"
    install -m 0644 "$(dirname "$program")/NV BU tool.chm" "$dir/c/Norvale/NV BU tool.chm"
    # The files that go beside the program, as the copy clip; the demo install has them too.
    cp -r "$root/assets/install/." "$dir/c/Norvale/"
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

# --- The program (the display and the buses: scripts/lib/display.sh)

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
    grab "$1"
    crop_to "$1" "$2" "$3"
}
grab() { import -window root "miff:$1"; }
crop_to() {
    convert "miff:$1" -crop "$2" +repage "$3"
    echo "  $3 ($2)"
}

# --- The controls, through AT-SPI as a screen reader works them (scripts/lib/atspi.py)

atspi() { "$python" "$atspi" "$1" "$program_pid" "${@:2}"; }

# Works the menu item named $1.
press_menu_item() { atspi press "menu item" "$1"; }
