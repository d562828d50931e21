# shellcheck shell=bash disable=SC2154
# Opens the editor through a host script, and takes its pictures on a virtual display. Sourced after common.sh, wine.sh.

site=$build/run        # the site that ./run opens: its database, INI file and report folder
pictures=$build/pictures
caption='Speech Recognition Headings Editor'
suite='HKLM\SOFTWARE\Venhart and Company'
suite_key=$suite'\Talvik Report 2.0 for Windows\2.0'

# make_site FRESH: the folders, the INI file and, when it is not there or FRESH is yes, the sample database.
make_site() {
    mkdir -p "$site/root/ZENTRA/TEMP"
    printf '[System]\r\nNetworkRootDir=%s\r\n\r\n[EditDesktop]\r\nTagKnownHeadings=No\r\nTagMixedCaseHeadings=Yes\r\n' \
        "$(windows_path "$site/root")" >"$site/ZENTRA.INI"
}

# use_embedded_database FRESH: ODBC with the embedded database's driver as "SQL Server", and its sample database.
use_embedded_database() {
    local database=$site/zentra.db
    printf '[SQL Server]\nDescription=Embedded database\nDriver=%s\nFolder=%s\n' \
        "$build/embedded32/libkvembedded.so" "$site" >"$site/odbcinst.ini"
    : >"$site/odbc.ini"
    if [ "$1" = yes ] || [ ! -f "$database" ]; then
        build_preset native sqlbatch
        step "Making the sample database $database"
        rm -f "$database" "$database".new*
        logged sqlbatch env ODBCSYSINI="$build/native/odbc" "$build/native/sqlbatch" --create --quiet \
            --database "$database.new" "$root/embedded/database/tables.sql" "$root/embedded/database/sample.sql"
        mv "$database.new" "$database"
    else
        step "The sample database $database is kept with its edits (./run --fresh recreates it)"
    fi
    export ODBCSYSINI=$site ODBCINI=$site/odbc.ini
    export KVHEADERS_SERVER=embedded KVHEADERS_DATABASE=zentra
}

# register_component: for as long as the script runs; leaves no trace in the prefix.
register_component() {
    local dll
    dll=$(windows_path "$build/win32/KVHEADERS.dll")
    wine_quiet 60 wine regsvr32 /s "$dll" || fail "KVHEADERS.dll could not be registered" "Wine's output: $logs/wine.log"
    at_end unregister_component
    wine_quiet 60 wine reg add "$suite_key" /v LocalRootDir /d "$(windows_path "$site/root")" /f ||
        fail "Wine's registry cannot be written" "Its output: $logs/wine.log"
}
unregister_component() {
    wine_quiet 30 wine regsvr32 /s /u "$(windows_path "$build/win32/KVHEADERS.dll")"
    wine_quiet 30 wine reg delete "$suite" /f
}

# start_host: the host script in the background; its output is in build/log/host.log.
start_host() {
    wine cscript //nologo "$(windows_path "$root/examples/host.vbs")" >"$logs/host.log" 2>&1 </dev/null 9>&- &
    host_pid=$!
}

# finish_host SECONDS: waits for the host's end (0: for ever) and for its word that all went well.
finish_host() {
    local tries=$(($1 * 10)) left
    left=$tries
    while kill -0 "$host_pid" 2>/dev/null; do
        if [ "$tries" -ne 0 ] && [ $((left -= 1)) -lt 0 ]; then
            editor_failed "the editor's host has not ended within $1 s after the window was closed"
        fi
        sleep 0.1
    done
    wait "$host_pid" || true
    grep -q '^ShowForm returned 0' "$logs/host.log" || editor_failed "the host has not come back from ShowForm with 0"
}

# editor_failed TEXT: with what the host said and what the virtual display shows.
editor_failed() {
    local seen=()
    sed 's/^/       host: /' "$logs/host.log" >&2
    if [ "${virtual:-no}" = yes ] && timeout -k 5 20 import -silent -window root "$pictures/failure.png" 2>/dev/null; then
        seen=("What the display shows: $pictures/failure.png")
    fi
    fail "$1" "The host's output: $logs/host.log" ${seen[@]+"${seen[@]}"}
}

# find_window NAME: the number of the visible window of exactly that name.
find_window() { timeout -k 5 20 xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | head -n 1; }

# take_pictures: waits for the editor, shows one tab after the other and closes the editor by its Cancel button.
take_pictures() {
    local window='' tries=0 tab key hash hashes=()
    rm -rf "$pictures"
    mkdir -p "$pictures"
    until window=$(find_window "$caption") && [ -n "$window" ]; do
        kill -0 "$host_pid" 2>/dev/null || editor_failed "the host has ended before the editor was open"
        [ -z "$(find_window '(KVHEADERS|Connection Error|Error)')" ] || editor_failed "a message came up before the editor"
        [ $((tries += 1)) -lt 300 ] || editor_failed "no window \"$caption\" after 60 s"
        sleep 0.2
    done
    note "the editor is open: window $window"
    sleep 1
    tab=0
    for key in alt+g alt+f alt+h; do
        timeout -k 5 20 xdotool key --clearmodifiers "$key" || editor_failed "xdotool could not press $key"
        sleep 0.7
        timeout -k 5 20 import -silent -window "$window" "$pictures/tab-$tab.png" ||
            editor_failed "no picture could be taken of the editor"
        hash=$(timeout -k 5 20 convert "$pictures/tab-$tab.png" rgb:- | sha256sum)
        case " ${hashes[*]-} " in *"$hash"*) editor_failed "tab $tab looks like a tab before it" ;; esac
        hashes+=("$hash")
        note "$pictures/tab-$tab.png"
        tab=$((tab + 1))
    done
    timeout -k 5 20 xdotool key --clearmodifiers alt+c || editor_failed "xdotool could not press alt+c"
    finish_host 30
}

# odbc_value -d|-s NAME KEY: what this machine's odbcinst.ini (-d) or odbc.ini (-s) says of a driver or a data source.
odbc_value() { odbcinst -q "$1" -n "$2" 2>/dev/null | sed -n "s/^$3 *= *//Ip" | head -n 1; }

# driver_file NAME|FILE: the driver's file.
driver_file() {
    local file
    case $1 in
        /*) file=$1 ;;
        *) file=$(odbc_value -d "$1" Driver) ;;
    esac
    [ -n "$file" ] || fail "the ODBC driver \"$1\" is not in this machine's odbcinst.ini" \
        "These are known: $(odbcinst -q -d 2>/dev/null | tr '\n' ' ')"
    printf '%s' "$file"
}

# register_data_source NAME: tells Wine's registry of a data source of this machine's odbc.ini. The component asks there
# whether it exists, and the driver manager of Wine 10 for its driver.
register_data_source() {
    local database driver
    database=$(odbc_value -s "$1" Database)
    [ -n "$database" ] || fail "the data source $1 is not in this machine's odbc.ini, or has no Database=" \
        "These are known: $(odbcinst -q -s 2>/dev/null | tr '\n' ' ')"
    driver=$(driver_file "$(odbc_value -s "$1" Driver)")
    wine_quiet 60 wine reg add "HKCU\\SOFTWARE\\ODBC\\ODBC.INI\\$1" /v DATABASE /d "$database" /f ||
        fail "Wine's registry cannot be written" "Its output: $logs/wine.log"
    register_odbc_driver "$driver" "$1"
}
