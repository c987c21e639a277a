# The man pages, from the documents: template(1) from docs/template.1.md, template(7) from docs/language.md.
. "$ROOT/tools/lib/dist.sh"

# Makes both in a folder.
make_man_pages() {
    mkdir -p "$1"
    sed '/^%/d' "$ROOT/docs/template.1.md" | man_page 1 'User commands' >"$1/template.1"
    inside "$PHP" -n "$ROOT/tools/lib/man.php" "$ROOT/docs/language.md" | man_page 7 'Miscellaneous' >"$1/template.7"
}

# Markdown to a man page of this section and volume. A hyphen in the source is the one that is typed;
# the first line asks for tables.
man_page() {
    inside lowdown -s -t man --out-no-smarty --parse-no-metadata -m title=TEMPLATE -m section="$1" -m volume="$2" \
        -m source="template $(version)" -m date="$(released)" |
        sed -E "/^\./!s/-/\\\\-/g; 1i '\\\\\" t"
}

# The day of the version's entry in the changelog.
released() { sed -n "s/^## \[$(version)\] - //p" "$ROOT/CHANGELOG.md"; }
