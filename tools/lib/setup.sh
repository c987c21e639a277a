# Making the PHP 8.4 system, and adding packages to it. Read only when there is something to make.

# Two at once would make the same thing: the second waits, then finds it made. A set-up that ends
# in whatever way takes the lock with it.
lock_set_up() {
    mkdir -p "$CACHE" 2>/dev/null && [ -w "$CACHE" ] ||
        die "The folder $CACHE cannot be written to; XDG_CACHE_HOME can name another place than ${CACHE%/*}."
    exec 8>"$CACHE/lock"
    flock --nonblock 8 || { say "Another ./dev is setting up; waiting for it …"; flock 8; }
}

unlock_set_up() { exec 8>&-; }

set_up_system() {
    command -v apt-get >/dev/null ||
        die "Needed: $WANTED, and PHP_CONFIG=/path/to/php-config where it is not on the PATH (only Debian and Ubuntu are set up by themselves)."
    if machine_has_php; then
        KIND=host
        add_group base
        suits php-config8.4 || die "The packages are installed, but $WHY_NOT."
    else
        make_private
        enter_private
    fi
}

# Whether the machine's own packages have PHP 8.4 and can be added without changing one that is
# there. A fresh machine may have no package lists yet.
machine_has_php() {
    [ "$(candidate php8.4-dev)" ] || refresh_lists
    [ "$(candidate php8.4-dev)" ] && may_install && ! upgrades $(packages_of base)
}

candidate() { apt-cache policy "$1" 2>/dev/null | sed -n 's/^  Candidate: //p' | grep -v '^(none)$'; }

# Whether installing the packages would upgrade or remove one that is there.
upgrades() { apt-get -s install --no-install-recommends "$@" 2>/dev/null | grep -qE '^(Inst [^ ]+ \[|Remv )'; }

# How to be root, if we can be.
may_install() {
    AS_ROOT=()
    [ "$EUID" -ne 0 ] || return 0
    command -v sudo >/dev/null || return 1
    if [ -t 0 ]; then AS_ROOT=(sudo); else AS_ROOT=(sudo -n); fi
    "${AS_ROOT[@]}" true 2>/dev/null
}

refresh_lists() {
    [ -z "${LISTS_ARE_NEW-}" ] && may_install || return 0
    LISTS_ARE_NEW=yes
    say "Reading the package lists …"
    "${AS_ROOT[@]}" apt-get -q update >/dev/null 2>&1 || true
}

# Adds packages to the machine itself, and touches none that is there.
add_to_machine() {
    may_install || die "Missing packages: $*; run this as root once, or have them installed."
    refresh_lists
    ! upgrades "$@" || die "Installing $* would upgrade or remove packages of this machine, which is left to you."
    say "Installing on this machine: $*"
    "${AS_ROOT[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-remove --no-install-recommends "$@" \
        >"$CACHE/apt.log" 2>&1 </dev/null || explain "$CACHE/apt.log" "Installing $*"
}

# The sentence for a failed apt or mmdebstrap, from what it printed.
explain() {
    local log=$1 what=$2 why
    if grep -qiE 'no space left|enough free space' "$log"; then
        why="the disk is full"
    elif grep -qiE 'could not resolve|unable to connect|could not connect|connection (failed|refused|timed out)|network is unreachable|failed to fetch|temporary failure|404 +not found|does not have a release file' "$log"; then
        why="the package mirror cannot be reached or lacks the packages (the network, or the machine's apt sources)"
    elif grep -qiE 'NO_PUBKEY|not signed|signature' "$log"; then
        why="the mirror's signature could not be checked; a newer debian-archive-keyring is needed"
    elif grep -qiE 'read-only file system|permission denied|operation not permitted' "$log"; then
        why="the right to do so is missing"
    else
        why=$(grep -E '^(E|error): ' "$log" | tail -n 1) || why="it ended without a word"
    fi
    die "$what failed: $why. The whole output is in $log; run the same command again once that is mended."
}

# ---- the private system

make_private() {
    lock_set_up
    if [ ! -d "$PRIVATE" ]; then
        prepare_making
        make_anew
    fi
    unlock_set_up
}

prepare_making() {
    local missing=() free
    rm_tree "$PRIVATE".new
    free=$(df -Pk "$CACHE" | awk 'NR == 2 { print $4 }')
    [ "$free" -ge 1500000 ] || die "$CACHE has only $((free / 1024)) MB of room; the private PHP 8.4 system takes 1500 MB while it is made."
    command -v mmdebstrap >/dev/null || missing+=(mmdebstrap)
    [ -f /usr/share/keyrings/debian-archive-keyring.gpg ] || missing+=(debian-archive-keyring)
    [ "$EUID" -eq 0 ] || command -v newuidmap >/dev/null || missing+=(uidmap)
    [ ${#missing[@]} -eq 0 ] || add_to_machine "${missing[@]}"
    if [ "$EUID" -eq 0 ]; then
        unshare --mount true 2>/dev/null || die "This machine lets nobody mount (a container without the right?), which the private PHP 8.4 system needs; on Debian 13 none is needed."
    else
        unshare --user --map-root-user --mount true 2>/dev/null || die "This machine does not let ordinary users make name spaces, which the private PHP 8.4 system needs: run this as root."
        grep -q "^$(id -un):" /etc/subuid 2>/dev/null || die "The private PHP 8.4 system needs subordinate user numbers for you (usermod --add-subuids 100000-165535 --add-subgids 100000-165535 $(id -un)), or run this as root."
    fi
}

# Everything is made in a folder beside and put in place by one rename, so that the system is there
# whole or not at all. The making has name spaces of its own, which take its mounts and its
# processes away with it, however it ends.
make_anew() {
    local new=$PRIVATE.new log=$CACHE/setup.log packages group
    trap 'rm_tree "$PRIVATE".new' EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    say "This machine's packages have no PHP 8.4: making a private Debian 13 system in $PRIVATE (about a minute, 900 MB) …"
    packages=$(packages_of base; packages_of fpm)
    mkdir "$new"
    local spaces=(unshare --mount --pid --fork --kill-child=KILL)
    local options=(--variant=minbase --include="${packages//$'\n'/,}" --aptopt='Acquire::Retries "2"')
    mapfile -t -O ${#options[@]} options < <(proxies)
    mapfile -t sources < <(mirror)
    say "  mirror: ${sources[0]:-the default}"
    if [ "$EUID" -eq 0 ]; then
        TMPDIR=$new "${spaces[@]}" mmdebstrap --mode=root "${options[@]}" trixie "$new/root" "${sources[@]}" >"$log" 2>&1 </dev/null 8>&- &
    else
        TMPDIR=$new mmdebstrap --mode=unshare "${options[@]}" trixie - "${sources[@]}" 2>"$log" </dev/null 8>&- |
            { mkdir "$new/root" && tar -C "$new/root" --no-same-owner --delay-directory-restore --exclude='./dev/*' -xf -; } &
    fi
    show_progress $! "$log"
    wait $! || explain "$log" "Making the private system"
    finish "$new/root"
    mv "$new/root" "$PRIVATE"
    rm_tree "$new"
    trap - EXIT INT TERM HUP
    say "The private system is ready."
}

# What entering the system and adding to it count on: files to mount the machine's own over, no
# service started by a package, and no package added from inside, where /var is not its own.
finish() {
    local root=$1 name
    for name in passwd group hosts resolv.conf; do [ -e "$root/etc/$name" ] || : >"$root/etc/$name"; done
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod +x "$root/usr/sbin/policy-rc.d"
    printf '%s\n' 'DPkg::Pre-Invoke { "echo Packages are added by a group in tools/packages. >&2; exit 1"; };' >"$root/etc/apt/inside.conf"
    # apt cannot become its own user where only one user is mapped
    printf 'APT::Sandbox::User "root";\n' >"$root/etc/apt/apt.conf.d/90one-user"
    mkdir -p "$root/var/lib/php-template"
    for name in base fpm; do cp "$ROOT/tools/packages/$name.txt" "$root/var/lib/php-template/"; done
}

show_progress() { :; }

# A half-made system may still hold mounts of a machine that does not know our name spaces; never
# delete through one.
rm_tree() {
    [ -e "$1" ] || return 0
    rm -rf --one-file-system -- "$1" 2>/dev/null || mmdebstrap --unshare-helper rm -rf --one-file-system -- "$1" || true
}

# The Debian mirror that this machine's apt uses, as lines for a trixie system's sources; nothing
# where the machine has none for Debian, which leaves it to mmdebstrap's default.
mirror() {
    local id codename
    id=$(. /etc/os-release && echo "$ID")
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME-}")
    [ "$id" = debian ] || return 0
    apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 2>/dev/null |
        awk -v codename="$codename" '
            $1 !~ /^(https?|ftp|file|copy):/ || $3 != "main" || seen[$1]++ { next }
            $2 == codename || $2 ~ /^(old)*stable$/ { if (!main++) print "deb", $1, "trixie", "main" }
            $2 == codename "-security" || $2 ~ /^(old)*stable-security$/ { if (!security++) print "deb", $1, "trixie-security", "main" }
        '
}

# The proxies that this machine's apt uses.
proxies() {
    apt-config dump --format '%f "%v"%n' Acquire | grep -E '^Acquire::(http|https|ftp)::(proxy|Proxy-Auto-Detect)[: ]' -i |
        sed 's/^/--aptopt=/'
}

# ---- package groups

add_group() {
    if [ "$KIND" = private ]; then
        add_to_private "$1"
    else
        mkdir -p "$CACHE"
        add_to_machine $(missing_of "$1")
    fi
}

add_to_private() {
    local packages log=$CACHE/apt.log
    lock_set_up
    packages=$(packages_of "$1")
    say "Installing in the private system: ${packages//$'\n'/ }"
    {
        private_root apt-get -q update &&
            private_root dpkg --configure -a &&
            private_root apt-get -q install -y --fix-broken --no-install-recommends $packages
    } >"$log" 2>&1 </dev/null 8>&- || explain "$log" "Installing the packages of $1"
    mkdir -p "$PRIVATE/var/lib/php-template"
    cp "$ROOT/tools/packages/$1.txt" "$PRIVATE/var/lib/php-template/"
    unlock_set_up
}

# Runs a command as the root of the private system.
private_root() {
    local unshare=(unshare --mount --pid --fork --kill-child=KILL) fake=
    [ "$EUID" -eq 0 ] || { unshare+=(--user --map-root-user); fake=fakeroot; }
    "${unshare[@]}" -- /bin/sh -c '
        set -e
        system=$1 fake=$2
        shift 2
        mount --rbind /dev "$system/dev"
        mount -t proc proc "$system/proc"
        mount --bind /etc/resolv.conf "$system/etc/resolv.conf"
        exec chroot "$system" env -u APT_CONFIG PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
            DEBIAN_FRONTEND=noninteractive $fake "$@"
    ' sh "$PRIVATE" "$fake" "$@"
}
