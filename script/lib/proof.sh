# What the rows of script/prove share. A row is a program in script/proof: it builds what it needs,
# reports progress on the standard error, prints its figures on the standard output, one line for
# each, and ends with 0 exactly if all of them are reached. Source it after common.sh.

ROWS=(allocation-failures plugin-faults event-storm task-context-model soak fuzz coverage mutations
      sanitizers device-faults)

# tests_hold PRESET REGEX: builds the preset and runs the tests whose names match.
tests_hold() {
    local preset=$1 regex=$2 log closing
    log=$(mktemp)
    build_preset "$preset" -DCORVANE_KIT_TESTS=ON >&2
    if ! ctest --preset "$preset" -R "$regex" --no-tests=error >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    closing=$(sed -n 's/^[0-9]*% tests passed, 0 tests failed out of \([0-9]*\)$/\1/p' "$log")
    rm -f "$log"
    echo "$preset: $closing tests, none failed"
}
