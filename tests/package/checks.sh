# shellcheck shell=bash disable=SC2154
# Checks that are counted, for the tests of what is delivered. Sourced after common.sh and wine.sh; $work is a folder.

failures=0

# check TEXT COMMAND...: counts a failure when the command fails.
check() {
    local text=$1
    shift
    if "$@"; then note "ok      $text"; else note "FAILED  $text"; failures=$((failures + 1)); fi
}
same() { diff "$1" "$2" >"$work/difference" || { head -n 20 "$work/difference"; false; }; }
is() { [ "$1" = "$2" ] || { echo "        \"$1\" instead of \"$2\""; false; }; }

# run_line EXPECTED LINE [SECONDS]: a command line as it stands, through a batch file: programs have quotes of their own.
run_line() {
    local status=0
    printf '@%s\r\n@exit %%errorlevel%%\r\n' "$2" >"$work/line.bat"
    wine_quiet "${3:-120}" wine cmd /c "$(windows_path "$work/line.bat")" || status=$?
    check "exit code $1: $2" is "$status" "$1"
}
