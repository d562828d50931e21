# shellcheck shell=bash disable=SC2154
# A display, and Wine with a prefix of the project's own in build/wine. Sourced after common.sh.

export WINEPREFIX=$build/wine WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all}
# Neither questions about missing parts nor menu entries in the user's home.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"

# wine_quiet SECONDS COMMAND...: a Wine command with a time limit and its output in build/log/wine.log. (Through a pipe
# the caller would wait for Wine's background processes.)
wine_quiet() {
    local seconds=$1
    shift
    timeout -k 5 "$seconds" "$@" >>"$logs/wine.log" 2>&1 </dev/null 9>&-
}

# start_display: a virtual display of its own, ended with the script.
start_display() {
    local number=$build/display.number
    : >"$number"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$number" >"$logs/xvfb.log" 2>&1 </dev/null 9>&- &
    display_pid=$!
    at_end stop_display
    local tries=0
    until [ -s "$number" ]; do
        kill -0 "$display_pid" 2>/dev/null || fail "the virtual display (Xvfb) did not start" "Its output: $logs/xvfb.log"
        tries=$((tries + 1))
        [ $tries -lt 200 ] || fail "the virtual display (Xvfb) is not ready after 20 s" "Its output: $logs/xvfb.log"
        sleep 0.1
    done
    DISPLAY=:$(<"$number")
    export DISPLAY
    unset XAUTHORITY WAYLAND_DISPLAY
    note "virtual display $DISPLAY"
}
stop_display() {
    kill "$display_pid" 2>/dev/null
    wait "$display_pid" 2>/dev/null
}

# start_wine Y|N: the prefix, made when it is not there yet, with its server running. Y: windows get their frame from
# the desktop's window manager (a user's display); N: Wine draws it (a virtual display without one).
start_wine() {
    local hash fonts=$WINEPREFIX/drive_c/windows/Fonts
    hash=$(content_hash "${BASH_SOURCE[0]}" "$root/tools/setup/prefix.reg" "$(wine --version)" "$WINEPREFIX")
    mkdir -p "$WINEPREFIX"
    timeout -k 5 20 wineserver -k >/dev/null 2>&1 || true # one that an earlier script left behind
    if ! stamp_is wine-prefix "$hash"; then
        step "Making the Wine prefix $WINEPREFIX"
        clear_stamp wine-prefix
        clear_stamp wine-managed
        clear_stamp wine-odbc
        rm -rf "$WINEPREFIX"
        mkdir -p "$WINEPREFIX"
        at_end stop_wine
        wine_quiet 180 wineboot -i || fail "Wine could not make its prefix (wineboot -i)" "Its output: $logs/wine.log"
        wine_quiet 60 wineserver -w || true
        cp /usr/share/wine/fonts/{sserife.fon,tahoma.ttf,tahomabd.ttf,marlett.ttf} "$fonts/"
        start_wine_server
        wine_quiet 60 wine regedit /S "$root/tools/setup/prefix.reg" || fail "Wine's registry cannot be written" "Its output: $logs/wine.log"
        set_stamp wine-prefix "$hash"
    else
        at_end stop_wine
        start_wine_server
        # A test that was killed may have left the resolution it had set.
        wine_quiet 60 wine reg delete 'HKCU\Control Panel\Desktop' /v LogPixels /f || true
    fi
    if ! stamp_is wine-managed "$1"; then
        wine_quiet 60 wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d "$1" /f ||
            fail "Wine's registry cannot be written" "Its output: $logs/wine.log"
        wine_quiet 20 wineserver -k || true
        start_wine_server
        set_stamp wine-managed "$1"
    fi
}
# The server stays a minute after the last program, so that programs that follow each other start at once.
start_wine_server() { wine_quiet 20 wineserver -p60 || fail "wineserver did not start" "Its output: $logs/wine.log"; }
stop_wine() { timeout -k 5 20 wineserver -k >/dev/null 2>&1; }

# register_odbc_driver FILE [SOURCE]: Wine's registry gets the 32-bit Linux driver as "SQL Server", and the data source, if
# one is named. From version 10 on, Wine's driver manager looks there alone, and asks for the data source of the connection
# string first: the component's driver form names the one that is two apostrophes. Earlier versions hand the connection
# string to unixODBC and its odbcinst.ini.
register_odbc_driver() {
    local source=${2:-"''"} script=$build/odbc-driver.reg file=${1//\\/\\\\} hash
    {
        printf 'REGEDIT4\r\n'
        printf '\r\n[HKEY_LOCAL_MACHINE\\Software\\ODBC\\%s]\r\n"%s"="%s"\r\n' \
            'ODBCINST.INI\ODBC Drivers' 'SQL Server' Installed \
            'ODBCINST.INI\SQL Server' Driver "$file" \
            'ODBC.INI\ODBC Data Sources' "$source" 'SQL Server'
    } >"$script"
    hash=$(content_hash "$script")
    ! stamp_is wine-odbc "$hash" || return 0
    wine_quiet 60 wine regedit /S "$(windows_path "$script")" || fail "Wine's registry cannot be written" "Its output: $logs/wine.log"
    set_stamp wine-odbc "$hash"
}

# windows_path FILE: the path by which Windows programs reach a file.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }
