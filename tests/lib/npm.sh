# npm_packages TESTS WORK: the packages of TESTS/package-lock.json in WORK, once. Status 3 when the
# registry cannot be reached, in seconds.
npm_packages() {
    cmp -s "$1/package-lock.json" "$2/installed" && return
    cp "$1/package.json" "$1/package-lock.json" "$2/" || return
    if (cd "$2" && npm ci --ignore-scripts --no-audit --no-fund --fetch-retries=0 --fetch-timeout=15000) >"$2/npm.log" 2>&1; then
        cp "$1/package-lock.json" "$2/installed"
    elif grep -qE 'EAI_AGAIN|ENOTFOUND|ECONN(REFUSED|RESET)|E(HOST|NET)UNREACH|TIMEDOUT|SOCKET_TIMEOUT' "$2/npm.log"; then
        return 3
    else
        cat "$2/npm.log"
        return 1
    fi
}
