# shellcheck shell=bash disable=SC2154
# Configures and builds by preset. Sourced after common.sh.

# build_preset PRESET [TARGET...]: everything of the preset, or the targets named.
build_preset() {
    local preset=$1 hash started=$SECONDS target
    shift
    step "Building $preset${*:+: $*}"
    hash=$(content_hash "$root/CMakePresets.json" "$root"/cmake/{linux32,win32}.cmake "$root" "${KV_WERROR:-${CI:-}}" \
        "$(ls -d /usr/src/googletest 2>/dev/null)")
    if ! stamp_is "configure-$preset" "$hash" || [ ! -f "$build/$preset/build.ninja" ]; then
        rm -rf "${build:?}/$preset/CMakeCache.txt" "$build/$preset/CMakeFiles"
        logged "configure-$preset" cmake --preset "$preset" -S "$root"
        set_stamp "configure-$preset" "$hash"
    fi
    local targets=()
    for target in "$@"; do targets+=(--target "$target"); done
    build_shown "$preset" cmake --build "$build/$preset" ${targets[@]+"${targets[@]}"}
    note "done in $((SECONDS - started)) s"
}

# Shows the compiler's progress on a terminal; elsewhere only what is wrong.
build_shown() {
    local log=$logs/build-$1.log
    shift
    if [ -t 1 ]; then
        "$@" 2>&1 | tee "$log" || fail "the build failed" "Its whole output: $log"
    elif ! "$@" >"$log" 2>&1; then
        grep -v '^\[[0-9]*/[0-9]*\] \(Building\|Linking\|Re-checking\)' "$log" | tail -n 60 >&2
        fail "the build failed" "Its whole output: $log"
    else
        grep -E 'warning:' "$log" || true
    fi
}
