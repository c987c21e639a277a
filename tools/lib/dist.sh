# What is published of a commit: the source archive, under the name that PIE looks for, the command
# line as a Composer package, and as a single file. What is in the first, .gitattributes says. The
# same commit gives the same bytes: git sorts the files and gives them the commit's time, no name
# and no time goes into the compression, and the name holds no number of the commit. The single file
# holds Symfony Console as installed, and is the same where that is.

version() { sed -n 's/^ *"\([0-9][0-9.]*\)",$/\1/p' "$ROOT/src/module/module.cpp"; }

of_commit() { git -C "$ROOT" -c tar.umask=0022 -c core.autocrlf=false "$@"; }

# make_archive FOLDER COMMIT: leaves the path in ARCHIVE.
make_archive() {
    local name
    command -v git >/dev/null && git -C "$ROOT" rev-parse --quiet --verify "$2^{commit}" >/dev/null ||
        die "What is published is made of a commit: this needs git and a clone of the repository."
    name=template-$(version)
    mkdir -p "$1"
    ARCHIVE=$(cd -P -- "$1" && pwd)/php_$name-src.tgz
    of_commit archive --format=tar --prefix="$name/" "$2" | gzip -9n >"$ARCHIVE.new" ||
        die "The source archive cannot be written."
    mv "$ARCHIVE.new" "$ARCHIVE"
}

# make_composer_package FOLDER COMMIT: the files that Composer's package has at its root, which is not
# the repository's: a package of type php-ext has no command. Leaves the path in COMPOSER_PACKAGE.
make_composer_package() {
    COMPOSER_PACKAGE=$(cd -P -- "$1" && pwd)/template-cli-$(version).tgz
    of_commit archive --format=tar --add-virtual-file="composer.json:$(of_commit show "$2:cli/composer.json")" \
        "$2" bin cli LICENSE ':(exclude)cli/composer.json' | gzip -9n >"$COMPOSER_PACKAGE.new" ||
        die "The Composer package cannot be written."
    mv "$COMPOSER_PACKAGE.new" "$COMPOSER_PACKAGE"
}

# make_phar FOLDER COMMIT: leaves the path in PHAR.
make_phar() {
    local tree
    tree=$(build_folder)/phar
    PHAR=$(cd -P -- "$1" && pwd)/template.phar
    rm -rf "$tree"
    mkdir -p "$tree"
    of_commit archive --format=tar "$2" bin cli LICENSE ':(exclude)cli/composer.json' | tar -C "$tree" -xf - &&
        inside "$PHP" -n -d extension=phar -d phar.readonly=0 "$ROOT/packaging/phar/build.php" "$tree" \
            "$(of_commit log -1 --format=%ct "$2")" "$PHAR" ||
        die "template.phar cannot be made."
}
