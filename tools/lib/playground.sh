# The editor of the playground: CodeMirror, bundled once. PLAYGROUND_BUNDLE is its folder; where the
# packages cannot be had the playground has plain text areas.
bundle_playground() {
    local source=$ROOT/examples/playground/editor log=${BUILD%/*}/playground.log
    export PLAYGROUND_BUNDLE=${BUILD%/*}/playground
    [ ! -f "$PLAYGROUND_BUNDLE/editor.js" ] || [ "$(find "$source" -newer "$PLAYGROUND_BUNDLE/editor.js" -print -quit)" ] || return 0
    say "Bundling the editor …"
    { inside sh -c 'command -v npm' >/dev/null || (need playground); } &&
        inside "$source/bundle" "$PLAYGROUND_BUNDLE" >"$log" 2>&1 </dev/null ||
        say "The editor's packages are not to be had ($log tells why): there are plain text areas, and the manual as it is written."
}
