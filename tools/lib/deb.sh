# The Debian packages, made the distribution's way from the source archive and packaging/debian.

# Runs a command where dpkg's database is that of the PHP system: the tools that build packages look
# for it in its usual place alone.
with_dpkg() {
    find_system
    [ "$KIND" = private ] || { inside "$@"; return; }
    local unshare=(unshare --mount)
    [ "$EUID" -eq 0 ] || unshare+=(--user --map-root-user)
    inside "${unshare[@]}" -- sh -c 'mount --bind "$DPKG_ADMINDIR" /var/lib/dpkg && exec "$@"' sh "$@"
}

# Who makes the package: what Debian's tools go by, else git's user, else this machine's.
maintainer() {
    local name=${DEBFULLNAME-} address=${DEBEMAIL-}
    [ "$name" ] || name=$(git -C "$ROOT" config user.name) || name=$(id -un)
    [ "$address" ] || address=$(git -C "$ROOT" config user.email) || address=$(id -un)@$(hostname -f 2>/dev/null || hostname)
    printf '%s <%s>\n' "$name" "$address"
}

# Where the repository is that this is a clone of; nothing for a clone of a folder.
homepage() {
    { git -C "$ROOT" remote get-url origin 2>/dev/null || true; } |
        sed -nE 's,^(ssh://)?git@([^:/]+)[:/],https://\2/,; s,^(https?://)[^/]*@,\1,; s,\.git$,,; /^https?:/p'
}

# In packaging/debian, what only the packager knows stands as @MAINTAINER@ and @HOMEPAGE@.
fill_in() {
    local maintainer homepage
    maintainer=$(maintainer)
    homepage=${DEB_HOMEPAGE:-$(homepage)}
    [ "$homepage" ] || say "The package gets no Homepage: this clone has no origin on the web; DEB_HOMEPAGE=https://… names one."
    sed -i "s|@MAINTAINER@|$maintainer|; s|@HOMEPAGE@|$homepage|; /^Homepage: $/d" "$1/control" "$1/changelog"
}

# build_deb: leaves the packages' paths in DEBS.
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
    fill_in "$source/debian"

    say "Building the Debian packages …"
    (cd "$source" && with_dpkg dpkg-buildpackage --no-sign) >"$log" 2>&1 </dev/null || {
        tail -n 30 "$log" >&2
        die "The Debian packages do not build; the whole output is in $log."
    }
    say "Checking them with lintian …"
    # all but where the mail of who makes them goes
    with_dpkg lintian --allow-root --fail-on error,warning --suppress-tags bogus-mail-host,bogus-mail-host-in-debian-changelog --info --display-info --color never "$folder"/*.changes >&2 ||
        die "lintian has something against the Debian packages."
    DEBS=("$folder"/php8.4-template_*.deb "$folder"/php-template-cli_*.deb)
}

# Installs the packages in a Debian of their own that holds nothing but PHP, uses them on the command
# line and through php-fpm, removes and purges them, and tries template.phar there. The system is
# thrown away. Its maker works in a folder that everybody can enter, as for the private system.
test_deb() {
    . "$ROOT/tools/lib/setup.sh"
    local tests=$ROOT/packaging/debian/tests log make=(mmdebstrap) options sources path
    log=$(build_folder)/deb/test.log
    WHY_PRIVATE="A fresh Debian is needed to try the packages in"
    lock
    check_means /var/tmp
    unlock
    make_temporary /var/tmp
    mkdir "$TEMPORARY/files"
    make_phar "$TEMPORARY/files" HEAD
    cp "${DEBS[@]}" "$tests/cli" "$tests/fpm" "$tests/command" "$ROOT"/packaging/debian-{life-test,bash-completion} "$TEMPORARY/files"
    chmod -R a+rX "$TEMPORARY/files"
    # what it mounts and starts is to go away with it
    [ "$EUID" -ne 0 ] || make=(unshare --mount --pid --fork --kill-child=KILL mmdebstrap --mode=root)
    mapfile -t options < <(proxies)
    mapfile -t sources < <(mirrors)
    say "Trying them in a fresh Debian (a minute or two) …"
    run_apart "$log" die_with_us env -C / TMPDIR="$TEMPORARY" "${make[@]}" --variant=minbase --format=null "${options[@]}" \
        --include=php8.4-cli,php8.4-fpm,libfcgi-bin \
        --customize-hook="copy-in $TEMPORARY/files /root" \
        --customize-hook='chroot "$1" sh /root/files/debian-life-test /root/files' \
        trixie - "${sources[@]}" || {
        tail -n 30 "$log" >&2
        die "The Debian packages fail in a fresh system; the whole output is in $log."
    }
    for path in "${MADE[@]}"; do remove "$path"; done
    MADE=()
    trap - EXIT HUP INT TERM
    sed -n 's/^ok: /  /p' "$log" >&2
}
