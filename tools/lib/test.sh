# Runs the test suites and adds up what they report.

run_tests() {
    local flavour=plain check= suite chosen names=() argument
    for argument in "$@"; do
        case $argument in
            --valgrind) export TEST_VALGRIND=1 TEST_SLOWNESS=7 check=valgrind ;;
            --asan) export TEST_ASAN=1 check=asan flavour=asan ;;
            --browser) export TEST_BROWSER=1 ;;
            --coverage) flavour=coverage ;;
            -*) die "./dev test knows --valgrind, --asan and --browser, not $argument." ;;
            *) names+=("$argument") ;;
        esac
    done
    [ -z "${TEST_VALGRIND-}" ] || [ -z "${TEST_ASAN-}" ] || die "--asan and --valgrind cannot be had at once."
    chosen=$(choose_suites "${names[@]}") || exit 1

    [ "$check" != valgrind ] || need debug
    build "$flavour"
    [ -z "$check" ] || use_checked_php $check
    export LOG=$BUILD/suite.log
    cd "$ROOT"
    PASSED=0 FAILED=0 SKIPPED=0 BAD=() TIMES=()
    while IFS= read -r -u 3 suite; do run_suite "$suite"; done 3<<<"$chosen"

    [ ${#BAD[@]} -eq 0 ] || printf '\nFailed: %s\n' "${BAD[*]}"
    printf '\nSeconds: %s\n' "${TIMES[*]}"
    printf '%d passed, %d failed%s\n' $PASSED $FAILED "$([ $SKIPPED -eq 0 ] || printf ', %d skipped' $SKIPPED)"
    [ $FAILED -eq 0 ]
}

suite_names() { printf '%s\n' "$ROOT"/tests/suites/[0-9]* | sed 's|.*/[0-9]*-||' | paste -sd ' '; }

# The suites to run: all, or those named, by NAME or NN-NAME. What needs a browser, as a line
# "# only: browser" in it says, is run when it is asked for.
choose_suites() {
    local suites=("$ROOT"/tests/suites/[0-9]*) suite name found
    if [ $# -eq 0 ]; then
        for suite in "${suites[@]}"; do
            [ "${TEST_BROWSER-}" ] || ! grep -qx '# only: browser' "$suite" || continue
            printf '%s\n' "$suite"
        done
        return
    fi
    for name in "$@"; do
        found=
        for suite in "${suites[@]}"; do
            [[ ${suite##*/} != "$name" && ${suite##*/} != [0-9]*-"$name" ]] || { printf '%s\n' "$suite"; found=yes; }
        done
        [ "$found" ] || die "No test suite is called $name; there are: $(suite_names)."
    done
}

# One suite in the PHP system. What counts is its last line; a suite that fails without saying what,
# or says nothing, counts as one failure.
run_suite() {
    local name=${1##*/} groups status=0 counts=(0 0 0) line started=$SECONDS
    read -ra groups < <(sed -n 's/^# need://p' "$1" | paste -sd ' ') || true
    [ ${#groups[@]} -eq 0 ] || need "${groups[@]}"
    printf '\n== %s\n' "${name#*-}"
    inside "$1" </dev/null 2>&1 | tee "$LOG" || status=$?
    line=$(grep -v '^[[:space:]]*$' "$LOG" | tail -n 1) || true
    if [[ $line =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed(,\ ([0-9]+)\ skipped)?$ ]]; then
        counts=("${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}" "${BASH_REMATCH[4]:-0}")
    else
        printf 'The suite ended without its counts (exit status %d).\n' $status
        counts=(0 1 0)
    fi
    [ $status -eq 0 ] || [ "${counts[1]}" -gt 0 ] || { printf 'The suite ended with exit status %d.\n' $status; counts[1]=1; }
    if [ "${REPORTS-}" ]; then
        collect_reports
        [ $REPORTED -eq 0 ] || printf 'Processes that did something wrong: %d\n' $REPORTED
        counts[1]=$((counts[1] + REPORTED))
    fi
    TIMES+=("${name#*-} $((SECONDS - started))")
    PASSED=$((PASSED + counts[0])) FAILED=$((FAILED + counts[1])) SKIPPED=$((SKIPPED + counts[2]))
    [ "${counts[1]}" -eq 0 ] || BAD+=("${name#*-}")
}
