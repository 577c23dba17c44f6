#!/usr/bin/env bash
# Takes the screenshots in docs/screenshots: the main window with the splash over it, the main
# window alone, the About window and the help window, at 100 % and, in docs/screenshots/200,
# at 200 %.
# Each scale runs on a throw-away demo install, a private X display and AT-SPI bus.
# NV_PROGRAM=/path/to/norvale-backup takes that program instead of building the dev preset.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/xsession.sh

install_tools
build_program

help_title="Help - Norvale Backup"

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
    grab "$dir/splash.miff"
    # On a busy machine the first paint can come late in the splash's two seconds.
    if gone "$splash_title"; then
        echo "The splash went before it was taken; run again on a quieter machine." >&2
        exit 1
    fi
    crop_to "$dir/splash.miff" "$(union "$main" "$splash")" "$out/splash.png"

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
    atspi press "push button" OK
    wait_for gone other

    press_menu_item "Help F1" &
    pids+=($!)
    wait_for shown "$help_title"
    read -r id help <<<"$(window_of "$help_title")"
    wait_for painted "$id"
    sleep 0.3
    capture "$dir/help.miff" "$help" "$out/help.png"
    stop_all
}

shoot 1 "$root/docs/screenshots"
shoot 2 "$root/docs/screenshots/200"
