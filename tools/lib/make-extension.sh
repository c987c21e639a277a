#!/bin/sh
# Bundles the VS Code extension and its language server, in the PHP 8.4 system:
#
#     make-extension.sh FOLDER [SOURCE]
#
# FOLDER gets a copy of SOURCE, which is editors/vscode, the npm packages of the lock file, and dist/. Status 3 when the
# registry that has them cannot be reached.
set -eu
tools=$(dirname -- "$0")
. "$tools/npm.sh"
from=${2-$tools/../../editors/vscode} to=$1
mkdir -p "$to"
for name in "$to"/*; do
    [ "${name##*/}" = node_modules ] || rm -rf "$name"
done
(cd "$from" && tar -cf - --exclude=./node_modules --exclude=./dist .) | tar -C "$to" -xf -
npm_packages "$from" "$to"
cd "$to"
npm run --silent build -- --log-level=warning
