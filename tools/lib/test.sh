# Runs the test suites and adds up what they report.

run_tests() {
    local flavour=plain check= suite suites chosen lacking= names=() argument
    for argument in "$@"; do
        case $argument in
            --valgrind) export TEST_VALGRIND=1 TEST_SLOWNESS=7 check=valgrind ;;
            --asan) export TEST_ASAN=1 check=asan flavour=asan ;;
            --browser) export TEST_BROWSER=1 ;;
            --arm64) export TEST_ARM64=1 TEST_SLOWNESS=${TEST_SLOWNESS-2} flavour=arm64 ;;
            --coverage) flavour=coverage ;;
            -*) misuse "There is no option $argument." ;;
            *) names+=("$argument") ;;
        esac
    done
    [[ "${TEST_VALGRIND-}${TEST_ASAN-}${TEST_ARM64-}" != 11* ]] || misuse "--asan, --valgrind and --arm64 cannot be had at once."
    chosen=$(choose_suites "${names[@]}") || exit

    mapfile -t suites <<<"$chosen"
    find_system
    for suite in "${suites[@]}"; do has_groups $(groups_of "$suite") || lacking+="${suite##*/[0-9]*-} "; done
    [ -z "$lacking" ] || say "Packages are missing for some suites (./dev test SUITE… runs others): ${lacking% }"
    need base $([ "$check" != valgrind ] || echo debug) $(groups_of "${suites[@]}")
    build "$flavour"
    [ -z "$check" ] || use_checked_php $check
    export LOG=$BUILD/suite.log
    cd "$ROOT" || exit
    PASSED=0 FAILED=0 SKIPPED=0 BAD=() TIMES=()
    for suite in "${suites[@]}"; do run_suite "$suite"; done

    [ ${#BAD[@]} -eq 0 ] || printf '\nFailed: %s\n' "${BAD[*]}"
    printf '\nSeconds: %s\n' "${TIMES[*]}"
    printf '%d passed, %d failed%s\n' $PASSED $FAILED "$([ $SKIPPED -eq 0 ] || printf ', %d skipped' $SKIPPED)"
    [ $FAILED -eq 0 ]
}

suite_names() { printf '%s\n' "$ROOT"/tests/suites/[0-9]* | sed 's|.*/[0-9]*-||' | paste -sd ' '; }

# The suites to run: all that suit the options, or those named, by NAME or NN-NAME.
choose_suites() {
    local suites=("$ROOT"/tests/suites/[0-9]*) suite name found
    if [ $# -eq 0 ]; then
        for suite in "${suites[@]}"; do
            ! suits_options "$suite" || printf '%s\n' "$suite"
        done
        return
    fi
    for name in "$@"; do
        found=
        for suite in "${suites[@]}"; do
            [[ ${suite##*/} != "$name" && ${suite##*/} != [0-9]*-"$name" ]] || { printf '%s\n' "$suite"; found=$suite; }
        done
        [ "$found" ] || misuse "No test suite is called $name; there are: $(suite_names)."
        [ -z "${TEST_ARM64-}" ] || says "$found" '(also|only): arm64' || misuse "The suite $name does not run on arm64."
    done
}

# What needs a browser runs when it is asked for. On arm64 runs what starts nothing but PHP, and says so.
suits_options() {
    if [ "${TEST_ARM64-}" ]; then
        says "$1" '(also|only): arm64'
    else
        ! says "$1" 'only: arm64' && { [ "${TEST_BROWSER-}" ] || ! says "$1" 'only: browser'; }
    fi
}

says() { grep -qxE "# $2" "$1"; }

# The package groups that suites need, which lines "# need: GROUP…" in them say. Servers ("# need
# private:") go into the private system alone, not on a machine that would start them, and only for root, who can make hosts.
groups_of() {
    local only_here=
    [ "$KIND" != private ] || [ "$EUID" -ne 0 ] || only_here='; s/^# need private://p'
    sed -n "s/^# need://p$only_here" "$@" | tr -s ' ' '\n' | sort -u
}

has_groups() {
    local group
    for group in "$@"; do has_group "$group" || return 1; done
}

# One suite in the PHP system. What counts is its last line; a suite that fails without saying what,
# or says nothing, counts as one failure.
run_suite() {
    local name=${1##*/} status=0 counts=(0 0 0) line started=$SECONDS
    printf '\n== %s\n' "${name#*-}"
    become "$1" </dev/null 2>&1 | tee "$LOG" || status=$?
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
        [ "$REPORTED" -eq 0 ] || printf 'Processes that did something wrong: %d\n' "$REPORTED"
        counts[1]=$((counts[1] + REPORTED))
    fi
    TIMES+=("${name#*-} $((SECONDS - started))")
    PASSED=$((PASSED + counts[0])) FAILED=$((FAILED + counts[1])) SKIPPED=$((SKIPPED + counts[2]))
    [ "${counts[1]}" -eq 0 ] || BAD+=("${name#*-}")
}
