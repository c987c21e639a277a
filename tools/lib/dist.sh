# The source archive, under the name that PIE looks for. What is in it, .gitattributes says. The
# same commit gives the same bytes: git sorts the files and gives them the commit's time, no name
# and no time goes into the compression, and the name holds no number of the commit.

version() { sed -n 's/^ *"\([0-9][0-9.]*\)",$/\1/p' "$ROOT/module/module.cpp"; }

# make_archive FOLDER COMMIT: leaves the path in ARCHIVE.
make_archive() {
    local name
    command -v git >/dev/null && git -C "$ROOT" rev-parse --quiet --verify "$2^{commit}" >/dev/null ||
        die "The source archive is made of a commit: this needs git and a clone of the repository."
    name=template-$(version)
    mkdir -p "$1"
    ARCHIVE=$(cd -P -- "$1" && pwd)/php_$name-src.tgz
    git -C "$ROOT" -c tar.umask=0022 -c core.autocrlf=false archive --format=tar --prefix="$name/" "$2" | gzip -9n >"$ARCHIVE.new" ||
        die "The source archive cannot be written."
    mv "$ARCHIVE.new" "$ARCHIVE"
}
