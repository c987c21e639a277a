# PHP under AddressSanitizer or valgrind: a program to run in place of PHP, which all that PHP starts
# as PHP_BINARY runs as well. What a process does wrong is written to a file of its own in the folder
# REPORTS, so that nobody who throws its output or exit status away hides it.
#
# All memory comes straight from malloc, which both watch, and is freed with the request after a fatal
# error alone; the memory limit holds.

CHECKED_SETTINGS='USE_ZEND_ALLOC=0 USE_TRACKED_ALLOC=1 ZEND_DONT_UNLOAD_MODULES=1'

# For a build with AddressSanitizer, whose libraries must be loaded before everything else.
make_sanitized_php() {
    local name libraries=
    for name in libasan.so libubsan.so libstdc++.so; do libraries+="$(inside g++ -print-file-name="$name") "; done
    write_checked_php "LD_PRELOAD='${libraries% }'" '' -DWITH_SANITIZER
}

# PCRE compiles patterns into code that reads ahead of what it has.
make_watched_php() {
    mkdir -p "$BUILD/checked"
    cp "$ROOT/tests/memory/valgrind.supp" "$BUILD/checked/"
    write_program valgrind <<END
exec valgrind -q --leak-check=full --show-leak-kinds=definite,indirect --errors-for-leak-kinds=definite \\
    --num-callers=30 --error-exitcode=98 --suppressions=$BUILD/checked/valgrind.supp \\
    \${REPORTS:+--log-file="\$REPORTS/%p.report"} "\$@"
END
    write_checked_php '' "$BUILD/checked/valgrind" '' -d pcre.jit=0
}

# write_checked_php ENVIRONMENT CHECKER COMPILER-OPTION PHP-OPTION…
write_checked_php() {
    local includes folder=$BUILD/checked environment=$1 checker=$2 option=$3
    shift 3
    mkdir -p "$folder"
    read -ra includes < <(inside "$PHP_CONFIG" --includes)
    [ -z "$(find "$ROOT/tests/memory" "$ROOT/tools/lib/checked.sh" "$BUILD/built" -newer "$folder/checked.so" 2>&1)" ] ||
        inside g++ -std=c++20 -O1 -g -shared -fPIC "${includes[@]}" ${option:+"$option"} "-DCHECKED_PHP=\"$folder/php\"" \
            -o "$folder/checked.so" "$ROOT/tests/memory/extension.cpp" || die "tests/memory/extension.cpp does not build."
    write_program php <<END
export $environment $CHECKED_SETTINGS
[ -z "\${REPORTS-}" ] || printf '%s\n' "\$*" >"\$REPORTS/\$\$.command"
exec $checker $PHP $* -d extension=$folder/checked.so "\$@"
END
}

write_program() {
    { printf '#!/bin/sh\n'; cat; } >"$BUILD/checked/$1"
    chmod +x "$BUILD/checked/$1"
}

# Puts the checked PHP in PHP's place, for the tests: use_checked_php asan|valgrind
# PLAIN_PHP is the other one; CHECKER goes before a program that is not PHP and is to be checked.
use_checked_php() {
    export PLAIN_PHP=$PHP REPORTS=$BUILD/checked/reports CHECKER=
    case $1 in
        asan)
            # UndefinedBehaviorSanitizer writes to standard error alone: what it ends is for the other one to report.
            export ASAN_OPTIONS="log_path=$REPORTS/report:handle_abort=1" UBSAN_OPTIONS=abort_on_error=1:print_stacktrace=1
            ;;
        valgrind)
            make_watched_php
            CHECKER=$BUILD/checked/valgrind
            ;;
    esac
    PHP=$BUILD/checked/php
    rm -rf "$REPORTS"
    mkdir -p "$REPORTS"
}

# Shows what was reported since the last time. REPORTED is how many processes did something wrong.
collect_reports() {
    local report process
    REPORTED=0
    for report in "$REPORTS"/*; do
        [[ -s $report && $report != *.command ]] || continue
        REPORTED=$((REPORTED + 1))
        [ $REPORTED -le 10 ] || continue
        process=${report%.report}
        process=$REPORTS/${process##*[./]}.command
        printf '\nReported of %s\n' "$(head -c 500 "$process" 2>/dev/null || echo 'a program that is not PHP')"
        head -n 60 "$report"
    done
    rm -rf "$REPORTS"
    mkdir -p "$REPORTS"
}
