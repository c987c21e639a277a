#!/bin/sh
# Bundles the VS Code extension and its language server, in the PHP 8.4 system:
#
#     make-extension.sh FOLDER [SOURCE]
#
# FOLDER gets a copy of SOURCE, which is editors/vscode, the npm packages of the lock file, and dist/. Status 3 when the
# registry that has them cannot be reached, in seconds.
set -eu
from=${2-$(dirname -- "$0")/../../editors/vscode} to=$1
mkdir -p "$to"
for name in "$to"/*; do
    [ "${name##*/}" = node_modules ] || rm -rf "$name"
done
(cd "$from" && tar -cf - --exclude=./node_modules --exclude=./dist .) | tar -C "$to" -xf -
cd "$to"
if ! cmp -s package-lock.json node_modules/installed; then
    npm ci --ignore-scripts --no-audit --no-fund --fetch-retries=0 --fetch-timeout=15000 >npm.log 2>&1 || {
        cat npm.log
        ! grep -qE 'EAI_AGAIN|ENOTFOUND|ECONN(REFUSED|RESET)|E(HOST|NET)UNREACH|TIMEDOUT|SOCKET_TIMEOUT' npm.log || exit 3
        exit 1
    }
    cp package-lock.json node_modules/installed
fi
npm run --silent build -- --log-level=warning
