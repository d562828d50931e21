# shellcheck shell=bash disable=SC2154
# What the tests have run of src/, by gcov's counts in the build folder of the preset "coverage". Sourced after common.sh.

# forget_coverage: the counts of runs before.
forget_coverage() { find "$build/coverage" -name '*.gcda' -delete; }

# report_coverage: lines and branches by folder, and the lines that were not run with their reasons. Branches that the
# compiler has made for exceptions, and those that nothing can reach, are left out: gcov counts two for almost every call.
report_coverage() {
    local folder=$build/coverage/report
    step "Coverage of src/"
    mkdir -p "$folder"
    logged gcovr gcovr --root "$root" --filter "$root/src/" --object-directory "$build/coverage" \
        --exclude-throw-branches --exclude-unreachable-branches -j "$(nproc)" \
        --csv "$folder/files.csv" --json "$folder/lines.json" --html-details "$folder/index.html" \
        "$build/coverage"
    sort "$folder/files.csv" | awk -F, '
        function percent(part, whole) { return whole ? 100 * part / whole : 100 }
        function row(name) {
            printf "    %-24s %6d %6.1f %% %6d %6.1f %%\n", name, lines[name], percent(covered[name], lines[name]),
                branches[name], percent(taken[name], branches[name])
        }
        BEGIN { printf "    %-24s %6s %8s %6s %8s\n", "", "lines", "run", "branches", "taken" }
        $1 ~ /^src\// {
            folder = $1
            sub("/[^/]*$", "", folder)
            if (!(folder in lines)) order[++count] = folder
            lines[folder] += $2; covered[folder] += $3; branches[folder] += $5; taken[folder] += $6
            lines["src"] += $2; covered["src"] += $3; branches["src"] += $5; taken["src"] += $6
        }
        END { for (i = 1; i <= count; i++) row(order[i]); row("src") }'
    note "without branches for exceptions and unreachable ones, which the compiler adds"
    "$root/tools/setup/uncovered" "$folder/lines.json"
    note "in their context: $folder/index.html"
}
