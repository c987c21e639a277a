# The VS Code extension as its packer makes it, and the language server in one file for all other
# editors, of a commit. The packer is not ours and has hundreds of packages of its own: its version is
# fixed here, and nothing of it goes into what it packs.

PACKER=@vscode/vsce@3.9.2

# make_vsix FOLDER COMMIT: leaves the paths in VSIX and SERVER.
make_vsix() {
    local work log time
    need language-server
    work=$(build_folder)/vsix
    log=$work/log
    rm -rf "$work"
    mkdir -p "$work/source" "$1"
    VSIX=$(cd -P -- "$1" && pwd)/php-template-$(version).vsix
    SERVER=${VSIX%/*}/template-language-server.cjs
    time=$(git -C "$ROOT" log -1 --format=%ct "$2") && git -C "$ROOT" archive "$2:editors/vscode" | tar -C "$work/source" -xf - ||
        die "The extension for editors is made of a commit: this needs git and a clone of the repository."
    say "Packing the extension for VS Code …"
    {
        inside "$ROOT/tools/lib/make-extension.sh" "$work/extension" "$work/source" &&
            rm -r "$work/extension/node_modules" &&
            inside env -C "$work/extension" SOURCE_DATE_EPOCH="$time" TZ=UTC npx --yes "$PACKER" package \
                --no-dependencies --allow-missing-repository --out "$work/new.vsix"
    } >"$log" 2>&1 </dev/null || {
        tail -n 20 "$log" >&2
        die "The extension for VS Code cannot be packed (its npm packages come from the registry); all that was printed is in $log."
    }
    cp "$work/extension/dist/server.cjs" "$SERVER"
    mv "$work/new.vsix" "$VSIX"
}
