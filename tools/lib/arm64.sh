# The extension for arm64 on another processor: a cross compiler builds it, and PHP of that
# architecture runs it under emulation. That PHP and its libraries are only unpacked, into a folder
# of their own beside the private system, and nothing of them is installed.

ARM64=$CACHE/arm64

# What is unpacked; the headers come by themselves, without the compiler that they depend on.
ARM64_PACKAGES=php8.4-cli,php8.4-mbstring,libstdc++6

# Sets PHP_CONFIG to the unpacked PHP's, PHP to a program that runs it, and PLAIN_PHP to this
# processor's own, for what only drives the tests.
use_arm64_php() {
    need arm64
    [ -d "$ARM64" ] || unpack_arm64_php
    export PLAIN_PHP=$PHP
    PHP_CONFIG=$ARM64/php-config PHP=$ARM64/php
}

unpack_arm64_php() {
    . "$ROOT/tools/lib/setup.sh"
    command -v apt-get >/dev/null || die "PHP for arm64 comes from Debian's packages, which only Debian and Ubuntu can fetch from here."
    lock
    if [ ! -d "$ARM64" ]; then
        say "Fetching PHP for arm64 and its libraries (100 MB on disk, ten seconds)"
        say "  to $ARM64"
        command -v mmdebstrap >/dev/null || add_to_machine mmdebstrap debian-archive-keyring
        remove "$ARM64.new"
        fetch_arm64_php "$ARM64.new" >"$CACHE/arm64.log" 2>&1 </dev/null 8>&- || explain "$CACHE/arm64.log" "Fetching PHP for arm64"
        finish_arm64_php "$ARM64.new"
        mv "$ARM64.new" "$ARM64"
    fi
    unlock
}

fetch_arm64_php() {
    local options sources
    mapfile -t options < <(proxies)
    mapfile -t sources < <(mirrors)
    (
        umask 022
        export TMPDIR=/var/tmp
        exec setpriv --pdeathsig TERM mmdebstrap --mode=chrootless --variant=extract --architectures=arm64 \
            --include=$ARM64_PACKAGES "${options[@]}" --extract-hook='cd "$1/tmp" &&
                APT_CONFIG=$MMDEBSTRAP_APT_CONFIG apt-get -q download php8.4-dev && dpkg-deb -x php8.4-dev_*.deb "$1"' \
            trixie "$1" "${sources[@]}"
    )
}

# The programs that a build and a test use: php-config with the paths of this folder, and PHP as one
# program, which PHP's children are started as too. The emulator looks for each file in the folder
# first, then on the machine.
finish_arm64_php() {
    ln -s usr/lib "$1/lib"
    sed "s|^prefix=.*|prefix='$ARM64/usr'|; s|^php_sapis=.*|php_sapis=cli|" "$1/usr/bin/php-config8.4" >"$1/php-config"
    printf '#!/bin/sh\nexec qemu-aarch64 -L %q -0 %q %q "$@"\n' "$ARM64" "$ARM64/php" "$ARM64/usr/bin/php8.4" >"$1/php"
    chmod +x "$1/php" "$1/php-config"
}
