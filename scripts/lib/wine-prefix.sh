# Sourced: make_wine_prefix makes a fresh 64-bit Wine prefix at $WINEPREFIX with Wine's own fonts
# and a virtual desktop of 1280x1024, which draws title bars where no window manager runs.
# Wine's output goes to /dev/null: its background services would hold a pipe open for ever.
make_wine_prefix() {
    wineboot -i >/dev/null 2>&1 </dev/null || true
    wineserver -w
    [ -f "$WINEPREFIX/system.reg" ] || { echo "wineboot did not make $WINEPREFIX" >&2; return 1; }
    cp /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
    printf '\n[Software\\\\Wine\\\\Explorer] %s\n"Desktop"="Default"\n' "$(date +%s)" \
        >>"$WINEPREFIX/user.reg"
    printf '\n[Software\\\\Wine\\\\Explorer\\\\Desktops] %s\n"Default"="1280x1024"\n' \
        "$(date +%s)" >>"$WINEPREFIX/user.reg"
}

# Makes nl_NL.UTF-8 when it is missing, so that the boxes say Ja and Nee; false when it cannot.
make_dutch_locale() {
    locale -a | grep -qix 'nl_NL.utf-\?8' && return 0
    [ -w /etc/locale.gen ] && command -v locale-gen >/dev/null || return 1
    sed -i 's/^# *\(nl_NL.UTF-8 UTF-8\)/\1/' /etc/locale.gen
    grep -q '^nl_NL.UTF-8 UTF-8' /etc/locale.gen || echo 'nl_NL.UTF-8 UTF-8' >>/etc/locale.gen
    locale-gen >/dev/null
}
