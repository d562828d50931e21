# shellcheck shell=bash disable=SC2154
# Runs the tests of a preset and counts test cases. Sourced after common.sh.

total_passed=0 total_failed=0 total_skipped=0

# run_tests PRESET: uses $only, the pattern of the programs to run.
run_tests() {
    local preset=$1 status=0 counts passed failed skipped programs log=$build/$1/Testing/Temporary/LastTest.log
    step "Testing $preset"
    rm -f "$log"
    # A failure is in the log; what ctest says of it is shown as it is.
    ctest --test-dir "$build/$preset" -R "$only" -j "$(nproc)" --output-on-failure --no-tests=error 9>&- || status=$?
    [ -f "$log" ] || fail "ctest has run nothing for $preset"
    counts=$(count_cases "$log")
    read -r programs passed failed skipped <<<"$counts"
    # ctest knows of failures that print no failed case: a crash, a time-out, a program that could not be started.
    if [ "$status" -ne 0 ] && [ "$failed" -eq 0 ]; then failed=1; fi
    note "$preset: $programs programs, $passed passed, $failed failed, $skipped skipped"
    total_passed=$((total_passed + passed))
    total_failed=$((total_failed + failed))
    total_skipped=$((total_skipped + skipped))
}

# count_cases LOG: "programs passed failed skipped" from ctest's log. A GoogleTest program counts by its cases, any other
# one, and one that ended badly without a failed case, as one.
count_cases() {
    tr -d '\r' <"$1" | awk '
        /^[0-9]+\/[0-9]+ Testing: / { programs++; ok = bad = skip = 0 }
        /^\[       OK \] /      { ok++ }
        /^\[  FAILED  \] .*\([0-9]+ ms\)$/ { bad++ }
        /^\[  SKIPPED \] .*\([0-9]+ ms\)$/ { skip++ }
        /^Test Passed\.$/ { if (ok + bad + skip == 0) ok = 1; passed += ok; failed += bad; skipped += skip }
        /^Test (Failed|Timeout|Exception)/ { if (bad == 0) bad = 1; passed += ok; failed += bad; skipped += skip }
        END { print programs + 0, passed + 0, failed + 0, skipped + 0 }'
}

# print_tally: the closing line; ends the script with 1 when a test failed.
print_tally() {
    step "Tests: $total_passed passed, $total_failed failed$([ $total_skipped -eq 0 ] || echo ", $total_skipped skipped") (${SECONDS} s)"
    [ "$total_failed" -eq 0 ] || exit 1
}
