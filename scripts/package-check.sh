#!/usr/bin/env bash
# Builds the Debian package with CPack (preset `package`, build/package) and checks it: the
# files and their modes, the control fields, the menu entry, and an unpacked copy that starts.
# NV_BUILD_DIR names another build folder for the same preset.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"
started=$SECONDS

bash scripts/install-deps.sh
# dpkg-shlibdeps computes Depends; desktop-file-validate checks the menu entry.
bash scripts/install-deps.sh dpkg-dev desktop-file-utils binutils
# enum_chmLib and extract_chmLib read the help file as the program does, through chmlib.
bash scripts/install-deps.sh libchm-bin

build="${NV_BUILD_DIR:-$root/build/package}"
cmake --preset package -B "$build" >/dev/null
cmake --build "$build" -j2 --target norvale-backup
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
arch=$(dpkg --print-architecture)
deb="$build/norvale-backup_${version}_${arch}.deb"
rm -f "$build"/norvale-backup_*.deb
if ! (cd "$build" && cpack -G DEB >"$build/cpack.log" 2>&1) || [ ! -f "$deb" ]; then
    cat "$build/cpack.log" >&2
    echo "package-check: FAIL: CPack made no $(basename "$deb")" >&2
    exit 1
fi

failures=0
fail() {
    echo "  FAIL: $*"
    failures=$((failures + 1))
}
ok() { echo "  ok: $*"; }

prog_dir=opt/norvale-backup
program=/$prog_dir/norvale-backup

echo "Package $(basename "$deb"), $(stat -c %s "$deb") bytes"

echo "Control fields:"
before=$failures
field() { dpkg-deb -f "$deb" "$1"; }
expect_field() {
    local value
    value=$(field "$1")
    if [ "$value" = "$2" ]; then ok "$1: $value"; else fail "$1 is '$value', not '$2'"; fi
}
expect_field Package norvale-backup
expect_field Version "$version"
expect_field Architecture "$arch"
expect_field Maintainer "Tessaly <support@tessaly.example>"
if [ -n "$(field Section)" ]; then ok "Section: $(field Section)"; else fail "no Section"; fi
if [ "$(field Description | wc -l)" -ge 2 ]; then
    ok "Description: $(field Description | head -1)"
else
    fail "Description lacks a summary line and a body"
fi

# Every dependency must be a real package whose version on this machine satisfies it, so
# `apt install ./the.deb` on the same Debian release can satisfy it too.
depends=$(field Depends)
for needed in libc6 libstdc++6 libqt6core6 libqt6gui6 libqt6widgets6 libchm1 qt6-translations-l10n; do
    [[ ", $depends," == *", $needed"[\ ,]* ]] || fail "Depends lacks $needed"
done
IFS=',' read -ra items <<<"$depends"
for item in "${items[@]}"; do
    item=$(echo "$item" | xargs)
    name=${item%% *}
    installed=$(dpkg-query -W -f='${Version}' "$name" 2>/dev/null) || {
        fail "Depends names $name, which is not installed here"
        continue
    }
    if [[ "$item" =~ \((..?)\ ([^\)]+)\) ]]; then
        op=${BASH_REMATCH[1]}
        want=${BASH_REMATCH[2]}
        case "$op" in
        '>=') rel=ge ;; '<=') rel=le ;; '=') rel=eq ;; '>>') rel=gt ;; '<<') rel=lt ;;
        *) rel="" ;;
        esac
        if [ -z "$rel" ] || ! dpkg --compare-versions "$installed" "$rel" "$want"; then
            fail "Depends wants $item, this machine has $name $installed"
        fi
    fi
    if [[ "$name" == *-dev ]]; then
        fail "Depends names a development package: $name"
    fi
done
[ $failures -eq $before ] && ok "Depends: $depends"

# Settings and backups belong to the user: no maintainer script may run at all.
members=$(dpkg-deb --ctrl-tarfile "$deb" | tar -t | grep -vxE '\./|\./control|\./md5sums' || true)
if [ -n "$members" ]; then
    fail "the control archive holds more than control and md5sums: ${members//$'\n'/ }"
else
    ok "no maintainer scripts"
fi

echo "Contents:"
listing=$(dpkg-deb -c "$deb")
before=$failures
# mode, path[, link target]
expect_entry() {
    local mode="$1" path="$2" target="${3:-}" line
    # The name is the rest of the line after five fields, and may hold blanks.
    line=$(awk -v p="./$path" '{ name = $0; sub(/^[^ ]+ +[^ ]+ +[^ ]+ +[^ ]+ +[^ ]+ +/, "", name)
        sub(/ -> .*/, "", name); if (name == p) print }' <<<"$listing")
    if [ -z "$line" ]; then
        fail "missing ./$path"
        return
    fi
    read -r have_mode owner _ <<<"$line"
    [ "$have_mode" = "$mode" ] || fail "./$path has mode $have_mode, not $mode"
    [ "$owner" = "root/root" ] || fail "./$path belongs to $owner"
    if [ -n "$target" ]; then
        [ "$(awk '{print $8}' <<<"$line")" = "$target" ] || fail "./$path does not point to $target"
    fi
}
expect_entry -rwxr-xr-x "$prog_dir/norvale-backup"
expect_entry -rw-r--r-- "$prog_dir/NV BU tool.chm"
for asset in assets/install/*; do
    [ "${asset##*.}" = AVI ] && continue
    expect_entry -rw-r--r-- "$prog_dir/$(basename "$asset")"
done
expect_entry -rw-r--r-- usr/share/applications/norvale-backup.desktop
for size in 32 48 256; do
    expect_entry -rw-r--r-- "usr/share/icons/hicolor/${size}x${size}/apps/norvale-backup.png"
done
expect_entry lrwxrwxrwx usr/bin/norvale-backup "$program"
while read -r mode owner _ _ _ path _; do
    [ "$owner" = "root/root" ] || fail "$path belongs to $owner"
    [[ "$mode" == d* && "$mode" != drwxr-xr-x ]] && fail "folder $path has mode $mode"
    [[ "$mode" != l* && "${mode:8:1}" == w ]] && fail "$path is world-writable"
    case "$path" in
    ./ | ./opt/ | "./$prog_dir/"* | ./usr/ | ./usr/bin/* | ./usr/share/ | ./usr/share/applications/* | \
        ./usr/share/icons/*) ;;
    *) fail "unexpected entry $path" ;;
    esac
done <<<"$listing"
[ $failures -eq $before ] && ok "$(wc -l <<<"$listing") entries, modes and owners as expected"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
inst="$scratch/root"
dpkg -x "$deb" "$inst"

echo "Unpacked into a scratch root:"
before=$failures
desktop="$inst/usr/share/applications/norvale-backup.desktop"
if out=$(desktop-file-validate "$desktop" 2>&1) && [ -z "$out" ]; then
    ok "desktop-file-validate"
else
    fail "desktop-file-validate: $out"
fi
entry() { sed -n "s/^$1=//p" "$desktop"; }
[ "$(entry Exec)" = "$program" ] || fail "Exec is '$(entry Exec)', not $program"
[ "$(entry Icon)" = norvale-backup ] || fail "Icon is '$(entry Icon)', not norvale-backup"
for category in Office Finance; do
    [[ ";$(entry Categories)" == *";$category;"* ]] || fail "Categories lack $category"
done
if [ -z "$(entry Name)" ] || [ -z "$(entry Comment)" ]; then
    fail "Name or Comment is empty"
fi

# A PNG's width and height are big-endian words at bytes 16 and 20.
png_size() { od -An -tu1 -j16 -N8 "$1" | awk '{print $3*256+$4 "x" $7*256+$8}'; }
for size in 32 48 256; do
    icon="$inst/usr/share/icons/hicolor/${size}x${size}/apps/norvale-backup.png"
    [ -f "$icon" ] || continue
    have=$(png_size "$icon")
    [ "$have" = "${size}x${size}" ] || fail "the ${size}x${size} icon is $have"
done
[ $failures -eq $before ] && ok "menu entry and icons"

before=$failures
for asset in assets/install/*; do
    [ "${asset##*.}" = AVI ] && continue
    cmp -s "$asset" "$inst/$prog_dir/$(basename "$asset")" ||
        fail "$prog_dir/$(basename "$asset") differs from $asset"
done
[ "$(head -c 6 "$inst/$prog_dir/FILECOPY.GIF" 2>/dev/null)" = GIF89a ] ||
    fail "the copy clip beside the program is not a GIF"
[ $failures -eq $before ] && ok "the copy clip lies beside the program"

# The help file opens with chmlib and holds a page for each heading of the guide, its
# contents and index, and the pictures the guide shows.
before=$failures
help="$inst/$prog_dir/NV BU tool.chm"
if ! listing=$(enum_chmLib "$help" 2>&1) || ! grep -q 'normal file' <<<"$listing"; then
    fail "the help file does not open with chmlib: $(head -3 <<<"$listing")"
else
    pages=$(grep -c 'normal file.*\.html$' <<<"$listing" || true)
    headings=$(grep -cE '^#{1,3} ' docs/gebruikershandleiding.md)
    [ "$pages" -eq "$headings" ] ||
        fail "the help file holds $pages pages, the guide has $headings headings"
    for member in /toc.hhc /index.hhk /index.html; do
        grep -q "normal file[[:space:]]*$member\$" <<<"$listing" || fail "the help file lacks $member"
    done
    for picture in $(grep -o '](screenshots/[^)]*\.png)' docs/gebruikershandleiding.md | tr -d '()]'); do
        grep -q "/$picture\$" <<<"$listing" || fail "the help file lacks the picture $picture"
    done
    extract_chmLib "$help" "$scratch/help" >/dev/null 2>&1 || true
    first=$(sed -n 's/^# //p' docs/gebruikershandleiding.md | head -1)
    grep -qF "<h1>$first</h1>" "$scratch/help/index.html" 2>/dev/null ||
        fail "the help file's first page is not headed '$first'"
    [ $failures -eq $before ] && ok "the help file opens with chmlib: $pages pages, contents, index, pictures"
fi

binary="$inst$program"
if missing=$(ldd "$binary" | grep 'not found'); then
    fail "libraries not found: $missing"
else
    ok "ldd finds every library"
fi
if readelf -d "$binary" | grep -qE 'RPATH|RUNPATH'; then
    fail "the program keeps a run path: $(readelf -d "$binary" | grep -E 'RPATH|RUNPATH')"
fi
# Qt loads these at run time, out of sight of dpkg-shlibdeps: the copy clip's GIF reader, the
# X11 window system, and the Dutch texts of Qt's dialogs. Each must come with a package named in
# Depends.
before=$failures
for wanted in '*/qt6/plugins/imageformats/libqgif.so' '*/qt6/plugins/platforms/libqxcb.so' \
    '*/qt6/translations/qtbase_nl.qm'; do
    owner=$(dpkg -S "$wanted" 2>/dev/null | head -1 | cut -d: -f1) || owner=""
    if [ -z "$owner" ]; then
        fail "no installed package holds $wanted"
    elif [[ ", $depends," != *", $owner"[\ ,]* ]]; then
        fail "$wanted comes from $owner, which Depends does not name"
    fi
done
[ $failures -eq $before ] && ok "the files Qt loads at run time come with Depends"

# Starts the program offscreen with its own config folder and waits for the settings file
# it writes at start-up; it then waits on a box or its window, so it is stopped.
start_program() { # log, settings file to wait for, command...
    local log="$1" wait_for="$2"
    shift 2
    (
        export QT_QPA_PLATFORM=offscreen HOME="$scratch/home" XDG_CONFIG_HOME="$scratch/config"
        export XDG_DATA_HOME="$scratch/data" XDG_RUNTIME_DIR="$scratch/run"
        mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR"
        chmod 700 "$XDG_RUNTIME_DIR"
        exec "$@"
    ) >"$log" 2>&1 &
    local pid=$! waited=0
    while [ ! -s "$wait_for" ] && [ $waited -lt 150 ] && kill -0 $pid 2>/dev/null; do
        sleep 0.1
        waited=$((waited + 1))
    done
    sleep 0.5
    if kill -0 $pid 2>/dev/null; then
        kill $pid
        wait $pid 2>/dev/null || true
        [ -s "$wait_for" ]
    else
        wait $pid 2>/dev/null || true
        return 1
    fi
}

# Outside /opt the program keeps its files in its own folder.
if start_program "$scratch/plain.log" "$inst/$prog_dir/NVbackuptool.ini" "$binary"; then
    ok "the unpacked program starts and writes its settings beside itself"
else
    fail "the unpacked program did not start: $(tail -5 "$scratch/plain.log")"
fi
rm -f "$inst/$prog_dir/NVbackuptool.ini"

# Under /opt it is an install under Program Files: production folder and settings go to
# $XDG_CONFIG_HOME/<install folder>/. A private mount namespace lays the scratch root's /opt
# over the real one, so the machine's /opt is never touched.
settings="$scratch/config/norvale-backup/NVbackuptool.ini"
if [ "$(id -u)" -eq 0 ] && unshare --mount --propagation private true 2>/dev/null; then
    # shellcheck disable=SC2016 # the inner shell expands its own arguments
    if start_program "$scratch/opt.log" "$settings" unshare --mount --propagation private \
        sh -c 'mount --bind "$1" /opt && exec "$2"' sh "$inst/opt" "$program"; then
        dirfrom=$(sed -n 's/^dirfrom=//p' "$settings" | tr -d '\r')
        # shellcheck disable=SC1003 # the production folder is in drive form, with backslashes
        if [[ "$dirfrom" != *'\config\norvale-backup\' ]]; then
            fail "started from $program, the production folder is '$dirfrom'"
        elif [ -e "$inst/$prog_dir/NVbackuptool.ini" ]; then
            fail "started from $program, the program wrote into its own folder"
        else
            ok "started from $program, settings and production folder are $dirfrom"
        fi
    else
        fail "the program did not start from $program: $(tail -5 "$scratch/opt.log")"
    fi
else
    echo "  skipped: a start from $program (needs root and a private mount namespace)"
fi

elapsed=$((SECONDS - started))
if [ $failures -gt 0 ]; then
    echo "package-check: $failures check(s) failed (${elapsed} s)" >&2
    exit 1
fi
echo "package-check: $(basename "$deb") passes (${elapsed} s)"
