#!/usr/bin/env bash
# Takes the screenshots of a backup run and of the restore wizard in docs/screenshots: the
# progress window twice, a second apart (copy-1.png, copy-2.png), and the wizard at steps 1 and 3
# (wizard-1.png, wizard-3.png). The run copies a ledger of 1 GiB, so that the progress window
# stands long enough; the script checks that its clip moves between the two shots and that the
# backup on the stick matches the install. Works every control through AT-SPI.
# NV_PROGRAM=/path/to/norvale-backup takes that program instead of building the dev preset.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/xsession.sh

copy_title="Kopieren"
clip_name="Animatie van het kopiëren"
done_text="Bestanden succesvol gekopieerd naar "

install_tools
build_program

ms_now() { echo $(($(date +%s%N) / 1000000)); }

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

out="$root/docs/screenshots"
dir="$work/run"
mkdir -p "$out"
make_install "$dir"
# Real bytes, not a sparse file: the copy of a hole takes no time.
started=$(ms_now)
ledger="$dir/c/Norvale/NV_Ledger01.mdb"
dd if=/dev/zero bs=1M count=1024 status=none | tr '\0' 'x' >"$ledger"
# On disk and out of the page cache, as after a restart: a ledger read from memory copies in a
# second, too short for two shots a second apart.
sync "$ledger"
dd if="$ledger" iflag=nocache count=0 status=none
echo "Ledger of $(stat -c %s "$ledger") bytes written in $(($(ms_now) - started)) ms"

start_display "$dir" 1280 1024
start_buses "$dir"
prepare_settings "$dir"
start_program "$dir"
wait_for shown "$main_title"
wait_up_to 20 gone "$splash_title"

# --- The backup run

echo "Back Up"
atspi press "push button" "Back Up" --window "$main_title"
atspi window "Backup maken" --text "Backup maken naar map:" | sed 's/^/  box: /'
atspi press "push button" "OK" --window "Backup maken"
pressed=$(ms_now)
# The window stands for a few seconds only: the clip's place is asked for meanwhile.
atspi extents animation "$clip_name" --window "$copy_title" --timeout 10 >"$dir/clip" &
clip_pid=$!
pids+=("$clip_pid")

wait_for shown "$copy_title"
read -r copy_id copy <<<"$(window_of "$copy_title")"
wait_for painted "$copy_id"
echo "  progress window $copy shown $(($(ms_now) - pressed)) ms after OK"

# Two quick grabs of the window itself, turned into pictures afterwards: a capture of the whole
# screen takes longer than the second between the shots. A grab that fails with the window still
# there is xwd's fault, and is told as such.
grab_copy_window() {
    if ! xwd -id "$copy_id" -silent >"$dir/copy-$1.xwd" 2>"$dir/xwd.err" ||
        ! shown "$copy_title"; then
        shown "$copy_title" || fail "the progress window closed before shot $1"
        fail "xwd could not grab the progress window: $(cat "$dir/xwd.err")"
    fi
}
first=$(ms_now)
grab_copy_window 1
left=$((1000 - ($(ms_now) - first)))
[ "$left" -le 0 ] || sleep "$(printf '%d.%03d' $((left / 1000)) $((left % 1000)))"
second=$(ms_now)
grab_copy_window 2
echo "  shots $((second - first)) ms apart, taken $((first - pressed)) and $((second - pressed)) ms after OK"
wait "$clip_pid" || fail "the progress window shows no clip '$clip_name'"
clip="$(cat "$dir/clip")"

# The clip's place in the window, from its place on the screen.
IFS='x+' read -r clip_w clip_h clip_x clip_y <<<"$clip"
IFS='x+' read -r _ _ copy_x copy_y <<<"$copy"
inside="${clip_w}x${clip_h}+$((clip_x - copy_x))+$((clip_y - copy_y))"
for shot in 1 2; do
    convert "xwd:$dir/copy-$shot.xwd" "$out/copy-$shot.png"
    echo "  $out/copy-$shot.png ($copy)"
    convert "$out/copy-$shot.png" -crop "$inside" +repage "$dir/clip-$shot.png"
done
changed="$(compare -metric AE "$dir/clip-1.png" "$dir/clip-2.png" null: 2>&1 || true)"
case "$changed" in
'' | *[!0-9]*) fail "could not compare the clip's region of the two shots: $changed" ;;
0) fail "the clip stood still: its region ($inside) is the same in copy-1.png and copy-2.png" ;;
esac
echo "  the clip moved: $changed pixels of its region differ between the shots"

wait_up_to 300 gone "$copy_title"
closed=$(ms_now)
box="$(atspi window "Back Up" --text "$done_text" --timeout 60)"
echo "  progress window closed $((closed - pressed)) ms after OK; the box reads:"
sed 's/^/  box: /' <<<"$box"
atspi press "push button" "OK" --window "Back Up"
wait_for gone "Back Up"

folder="$(sed -n "s/^$done_text//p" <<<"$box" | head -n 1)"
[[ "$folder" == 'E:\'* ]] || fail "the box names no folder on E: ($folder)"
folder="$dir/stick/$(tr '\\' '/' <<<"${folder#E:\\}")"
expected="$(printf '%s\n' "${sample_files[@]}" NVbackuptool.ini | sort)"
held="$(ls -A "$folder" | sort)"
[ "$held" = "$expected" ] ||
    fail "the backup folder holds $(tr '\n' ' ' <<<"$held"), not $(tr '\n' ' ' <<<"$expected")"
# The settings file changes after its copy: the run writes the day of the backup in it.
for name in "${sample_files[@]}"; do
    cmp "$dir/c/Norvale/$name" "$folder/$name" || fail "$name on the stick differs from the install's"
done
echo "  the backup folder holds the nine files; the eight sample files, the ledger of 1 GiB among them, are identical"

# --- The restore wizard

echo "Restore wizard"
atspi press "push button" "Terugzetten Backup . . ." --window "$main_title"
atspi window "$main_title" --text "Terugzetten backup, stap 1 van 5" >/dev/null
# The window grows and moves for the wizard; time for it to repaint there.
sleep 0.5
read -r main_id main <<<"$(window_of "$main_title")"
capture "$dir/wizard-1.miff" "$main" "$out/wizard-1.png"
for step in 2 3; do
    atspi press "push button" "Volgende >>>" --window "$main_title"
    # The step's text is read only once the highlight's glide is over: both are one handler.
    atspi window "$main_title" --text "Terugzetten backup, stap $step van 5" >/dev/null
done
sleep 0.5
read -r main_id main <<<"$(window_of "$main_title")"
capture "$dir/wizard-3.miff" "$main" "$out/wizard-3.png"
