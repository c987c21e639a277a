# The Debian package, made the distribution's way from the source archive and packaging/debian.

# Runs a command where dpkg's database is that of the PHP system: the tools that build packages look
# for it in its usual place alone.
with_dpkg() {
    find_system
    [ "$KIND" = private ] || { inside "$@"; return; }
    local unshare=(unshare --mount)
    [ "$EUID" -eq 0 ] || unshare+=(--user --map-root-user)
    inside "${unshare[@]}" -- sh -c 'mount --bind "$DPKG_ADMINDIR" /var/lib/dpkg && exec "$@"' sh "$@"
}

# build_deb: leaves the package's path in DEB.
build_deb() {
    need deb
    local folder source commit log
    folder=$(build_folder)/deb
    source=$folder/php-template-$(version)
    log=$folder/build.log
    # as the checkout is, changes that no commit holds yet included (of files that git knows)
    commit=$(git -C "$ROOT" -c user.name=dev -c user.email=dev@localhost stash create 2>/dev/null) || commit=
    rm -rf "$folder"
    make_archive "$folder" "${commit:-HEAD}"
    mkdir "$source"
    tar -C "$source" --strip-components=1 -xzf "$ARCHIVE"
    mv "$ARCHIVE" "$folder/php-template_$(version).orig.tar.gz"
    cp -r "$ROOT/packaging/debian" "$source/debian"

    say "Building the Debian package …"
    (cd "$source" && with_dpkg dpkg-buildpackage --no-sign) >"$log" 2>&1 </dev/null || {
        tail -n 30 "$log" >&2
        die "The Debian package does not build; the whole output is in $log."
    }
    say "Checking it with lintian …"
    with_dpkg lintian --allow-root --fail-on warning --info --display-info --color never "$folder"/*.changes >&2 ||
        die "lintian has something against the Debian package."
    DEB=$(ls "$folder"/php8.4-template_*.deb)
}

# Installs the package in a Debian of its own that holds nothing but PHP, uses it on the command
# line and through php-fpm, removes and purges it. The system is thrown away.
test_deb() {
    . "$ROOT/tools/lib/setup.sh"
    local folder tests=$ROOT/packaging/debian/tests make=(mmdebstrap) options sources
    folder=$(build_folder)/deb
    command -v mmdebstrap >/dev/null && [ -f /usr/share/keyrings/debian-archive-keyring.gpg ] ||
        add_to_machine mmdebstrap debian-archive-keyring
    # what it mounts and starts is to go away with it
    [ "$EUID" -ne 0 ] || make=(unshare --mount --pid --fork --kill-child=KILL mmdebstrap --mode=root)
    mapfile -t options < <(proxies)
    mapfile -t sources < <(mirrors)
    say "Trying it in a fresh Debian (a minute or two) …"
    TMPDIR=$folder "${make[@]}" --variant=minbase --format=null "${options[@]}" \
        --include=php8.4-cli,php8.4-fpm,libfcgi-bin \
        --customize-hook="copy-in $DEB $tests/cli $tests/fpm $ROOT/packaging/debian-life-test /root" \
        --customize-hook='chroot "$1" sh /root/debian-life-test /root' \
        trixie - "${sources[@]}" >"$folder/test.log" 2>&1 </dev/null || {
        tail -n 30 "$folder/test.log" >&2
        die "The Debian package fails in a fresh system; the whole output is in $folder/test.log."
    }
    sed -n 's/^ok: /  /p' "$folder/test.log" >&2
}
