# npm_packages SOURCE FOLDER: the npm packages of SOURCE/package-lock.json in FOLDER, once. Status 3 when
# the registry that has them cannot be reached, in seconds.
npm_packages() {
    ! cmp -s "$1/package-lock.json" "$2/node_modules/installed" || return 0
    cp "$1/package.json" "$1/package-lock.json" "$2/" || return
    if (cd "$2" && npm ci --ignore-scripts --no-audit --no-fund --fetch-retries=0 --fetch-timeout=15000) >"$2/npm.log" 2>&1; then
        cp "$1/package-lock.json" "$2/node_modules/installed"
    elif grep -qE 'EAI_AGAIN|ENOTFOUND|ECONN(REFUSED|RESET)|E(HOST|NET)UNREACH|TIMEDOUT|SOCKET_TIMEOUT' "$2/npm.log"; then
        echo "The npm registry cannot be reached ($2/npm.log tells more)."
        return 3
    else
        cat "$2/npm.log"
        return 1
    fi
}
