# shellcheck shell=bash disable=SC2154
# Shared by ./run and ./test: where things are, messages, stamps, and a list of things to do at the end.
# Sourced by bash with `set -euo pipefail`.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
build=$root/build
logs=$build/log
stamps=$build/stamps

# step TEXT: what is being done now.
step() { printf '==> %s\n' "$*"; }

# note TEXT: a detail of it.
note() { printf '    %s\n' "$*"; }

# fail TEXT...: says what is wrong, one argument a line, and ends the script.
fail() {
    printf '\nerror: %s\n' "$1" >&2
    shift
    local line
    for line in "$@"; do printf '       %s\n' "$line" >&2; done
    exit 1
}

# logged NAME COMMAND...: runs the command with its output in build/log/NAME.log; shows the output's end on failure.
logged() {
    local log=$logs/$1.log status=0
    shift
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if [ "$status" -ne 0 ]; then
        tail -n 40 "$log" >&2
        fail "this command ended with $status: $*" "Its whole output: $log"
    fi
}

# Stamps: a finished piece of work leaves the hash of what it was made from.
# content_hash FILE|TEXT...: one hash for the contents of the files and the other words as they are.
content_hash() {
    local word
    for word in "$@"; do
        if [ -f "$word" ]; then sha256sum <"$word"; else printf '%s\n' "$word"; fi
    done | sha256sum | cut -d ' ' -f 1
}
stamp_is() { [ -f "$stamps/$1" ] && [ "$(<"$stamps/$1")" = "$2" ]; }
set_stamp() { printf '%s\n' "$2" >"$stamps/$1"; }
clear_stamp() { rm -f "$stamps/$1"; }

# at_end COMMAND: done when the script ends, however it ends, the last one first.
end_commands=()
at_end() { end_commands=("$1" ${end_commands[@]+"${end_commands[@]}"}); }
run_end_commands() {
    local status=$? command
    trap - EXIT INT TERM HUP
    set +e
    for command in ${end_commands[@]+"${end_commands[@]}"}; do $command; done
    exit "$status"
}
trap run_end_commands EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP

# One ./run or ./test at a time: they share the build folder, the Wine prefix and its server. Descriptor 9 holds the
# lock; programs that go on in the background are started with 9>&-.
lock_build_folder() {
    mkdir -p "$build" 2>/dev/null || true
    if ! { [ -w "$build" ] && mkdir -p "$logs" "$stamps" && [ -w "$logs" ] && [ -w "$stamps" ]; } 2>/dev/null; then
        fail "cannot write to $build" \
            "It belongs to $(stat -c %U "$build" 2>/dev/null || echo nobody), this is $(id -un): run as that user, or remove it."
    fi
    exec 9>>"$build/lock"
    flock -n 9 || fail "another ./run or ./test is at work in $build" "Wait for it to end, or end it, and try again."
}
