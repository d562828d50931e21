# shellcheck shell=bash disable=SC2154
# Runs the tests of a preset and counts test cases. Sourced after common.sh.

total_passed=0 total_failed=0 total_skipped=0

# run_tests PRESET: uses $only, the pattern of the CTest entries to run, and $without, the labels to leave out.
run_tests() {
    local folder=$build/$1 status=0 entries passed failed skipped junit=$build/$1/Testing/junit.xml
    step "Testing $1"
    rm -rf "$junit" "$folder/Testing/cases"
    ctest --test-dir "$folder" -R "$only" -LE "$without" -j "$(nproc)" --output-on-failure --no-tests=error \
        --output-junit "$junit" 9>&- || status=$?
    [ -f "$junit" ] || fail "ctest has run nothing for $1"
    read -r entries passed failed skipped < <(count_cases "$junit" "$folder/Testing/cases")
    if [ "$status" -ne 0 ] && [ "$failed" -eq 0 ]; then failed=1; fi
    note "$1: $entries CTest entries, $passed passed, $failed failed, $skipped skipped"
    sed -nE 's#.*<testcase name="([^"]*/long|acceptance|setup)" .*time="([0-9]*).*status="([^"]*)".*#    long run: \1, \2 s, \3#p' \
        "$junit"
    total_passed=$((total_passed + passed))
    total_failed=$((total_failed + failed))
    total_skipped=$((total_skipped + skipped))
}

# count_cases JUNIT FOLDER: "entries passed failed skipped" of a run, from CTest's results and the XML files that the
# GoogleTest programs have left in FOLDER. An entry without one counts as one case, and so does one that failed without
# a failed case: a crash, a time-out, a program that could not be started.
count_cases() {
    awk -v folder="$2" '
        function attribute(line, name) { return match(line, " " name "=\"[^\"]*\"") ? substr(line, RSTART + length(name) + 3, RLENGTH - length(name) - 4) : "" }
        /<testcase / {
            entries++
            good = bad = skip = 0
            file = attribute($0, "name")
            gsub("/", "_", file)
            while ((getline line < (folder "/" file ".xml")) > 0) {
                if (line ~ /<testsuites /) { bad = attribute(line, "failures"); good = attribute(line, "tests") - bad - attribute(line, "disabled") }
                if (line ~ /result="skipped"/) { good--; skip++ }
            }
            if (attribute($0, "status") != "run") { if (bad == 0) bad = 1 } else if (good + bad + skip == 0) good = 1
            passed += good; failed += bad; skipped += skip
        }
        END { print entries + 0, passed + 0, failed + 0, skipped + 0 }' "$1"
}

# print_tally: the closing line; ends the script with 1 when a test failed.
print_tally() {
    note "$SECONDS s in all"
    echo "Tests: $total_passed passed, $total_failed failed$([ $total_skipped -eq 0 ] || echo ", $total_skipped skipped")"
    [ "$total_failed" -eq 0 ] || exit 1
}
