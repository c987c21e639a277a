# Making the PHP 8.4 system and adding packages to it. Read only when there is something to make.

# Whole groups that the private system is made with; the others come when they are needed.
FIRST_GROUPS=(base unit clang fpm)

# Two at once would do the same: the second waits and finds it done. The lock goes with the shell.
lock() {
    mkdir -p "$CACHE" 2>/dev/null && { exec 8>"$CACHE/lock"; } 2>/dev/null ||
        die "The folder $CACHE cannot be written to; XDG_CACHE_HOME names another place for it."
    flock --nonblock 8 || { say "Another ./dev is setting up; waiting for it …"; flock 8; }
}

unlock() { exec 8>&-; }

set_up_system() {
    command -v apt-get >/dev/null ||
        die "Needed: $WANTED (PHP_CONFIG=/path/to/php-config names one that is not on the PATH); only Debian and Ubuntu are set up from here."
    lock
    if [ -d "$PRIVATE" ]; then
        use_private
    elif machine_has_php; then
        add_to_machine $(missing_of base)
        suits php-config8.4 || die "The packages are installed, but $WHY_NOT."
        KIND=host
    else
        make_private "${FIRST_GROUPS[@]}"
        use_private
    fi
    unlock
}

add_group() {
    lock
    if has_group "$1"; then
        :
    elif [ "$KIND" = private ]; then
        add_to_private "$1"
    else
        add_to_machine $(missing_of "$1")
    fi
    unlock
}

# ---- the machine itself

# Whether the machine's own packages have PHP 8.4 and can be added without touching one that is
# there.
machine_has_php() {
    [ "$(candidate php8.4-dev)" ] || refresh_lists
    [ "$(candidate php8.4-dev)" ] && may_install && ! upgrades $(packages_of base)
}

candidate() { apt-cache policy "$1" 2>/dev/null | sed -n '/^  Candidate: (none)/d; s/^  Candidate: //p'; }

# Whether installing packages would upgrade or remove one that is there.
upgrades() { apt-get -s install --no-install-recommends "$@" 2>/dev/null | grep -E '^(Inst [^ ]+ \[|Remv )' >/dev/null; }

# Whether we are root or can be; AS_ROOT goes before what needs it.
may_install() {
    AS_ROOT=()
    [ "$EUID" -ne 0 ] || return 0
    command -v sudo >/dev/null || return 1
    AS_ROOT=(sudo)
    [ -t 0 ] || AS_ROOT+=(-n)
    "${AS_ROOT[@]}" true 2>/dev/null
}

# A fresh machine has no package lists yet.
refresh_lists() {
    [ -z "$(find /var/lib/apt/lists -name '*_Packages*' -mtime -1 -print -quit 2>/dev/null)" ] || return 0
    may_install || return 0
    say "Reading the package lists …"
    "${AS_ROOT[@]}" apt-get -q update >/dev/null 2>&1 </dev/null 8>&- || true
}

# Adds packages to the machine, and touches none that is there.
add_to_machine() {
    [ $# -gt 0 ] || return 0
    [ -z "${DPKG_ADMINDIR-}" ] || die "Packages are not added from inside ./dev shell; leave it first."
    may_install || die "These packages are missing and only root can install them: $*"
    refresh_lists
    ! upgrades "$@" || die "Installing $* would upgrade or remove packages of this machine, which is left to you."
    say "Installing on this machine: $*"
    "${AS_ROOT[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-remove --no-install-recommends "$@" \
        >"$CACHE/apt.log" 2>&1 </dev/null 8>&- || explain "$CACHE/apt.log" "Installing $*"
}

# ---- the private system

# It is made in a folder beside and put in place by one rename, so that it is there whole or not at
# all.
make_private() {
    local new=$PRIVATE.new.$$ log=$CACHE/setup.log old
    for old in "$PRIVATE".new.*; do remove "$old"; done
    check_means
    MAKING='' MADE=$new
    trap clean_up EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    say "This machine's packages have no PHP 8.4: making a private Debian 13 system for it (1 GB, about a minute)"
    say "  in $PRIVATE"
    mkdir "$new"
    bootstrap "$new" "$@" >"$log" 2>&1 </dev/null 8>&- &
    MAKING=$!
    report_progress "$log"
    wait $MAKING || explain "$log" "Making the private system"
    MAKING=
    finish "$new/root"
    mv "$new/root" "$PRIVATE"
    trap - EXIT INT TERM HUP
    remove "$new"
    say "The private system is ready."
}

clean_up() {
    if [ "$MAKING" ]; then
        kill -KILL "$MAKING" 2>/dev/null || true
        wait "$MAKING" 2>/dev/null || true
    fi
    remove "$MADE"
}

# What the making needs, each with a sentence of its own when it is not there.
check_means() {
    local missing=() room=1500
    [ "$EUID" -eq 0 ] || room=2500
    [ $(($(df -Pk "$CACHE" | awk 'NR == 2 { print $4 }') / 1024)) -ge $room ] ||
        die "The disk of $CACHE has less than the $room MB left that making a private PHP 8.4 system takes; XDG_CACHE_HOME names another place for it."
    if [ "$EUID" -eq 0 ]; then
        unshare --mount true 2>/dev/null ||
            die "This machine's packages have no PHP 8.4, and it lets nobody mount (a container without the right to), which a private Debian 13 system needs."
    else
        unshare --user --map-root-user --mount true 2>/dev/null ||
            die "This machine's packages have no PHP 8.4, and it does not let ordinary users make name spaces, which a private Debian 13 system needs; run this as root."
        grep -q "^$(id -un):" /etc/subuid 2>/dev/null ||
            die "A private Debian 13 system needs subordinate user numbers, which root gives you: usermod --add-subuids 100000-165535 --add-subgids 100000-165535 $(id -un)"
    fi
    command -v mmdebstrap >/dev/null || missing+=(mmdebstrap)
    [ -f /usr/share/keyrings/debian-archive-keyring.gpg ] || missing+=(debian-archive-keyring)
    [ "$EUID" -eq 0 ] || command -v newuidmap >/dev/null || missing+=(uidmap)
    add_to_machine "${missing[@]}"
}

# The tool's mounts and processes are to go away with it, however it or we end: root gives it name
# spaces of its own, and it dies with us. For an ordinary user it makes its own, and an archive:
# unpacked by him, all files are his, to delete like any others.
bootstrap() {
    local new=$1 options sources packages
    shift
    umask 022
    packages=$(for group in "$@"; do packages_of "$group"; done)
    options=(--variant=minbase --include="${packages//$'\n'/,}")
    mapfile -t -O ${#options[@]} options < <(proxies)
    mapfile -t sources < <(mirrors)
    export TMPDIR=$new
    if [ "$EUID" -eq 0 ]; then
        exec setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child=KILL \
            mmdebstrap --mode=root "${options[@]}" trixie "$new/root" "${sources[@]}"
    fi
    options+=(--include=fakeroot)
    mkdir "$new/root"
    set -o pipefail
    setpriv --pdeathsig TERM mmdebstrap --mode=unshare "${options[@]}" trixie - "${sources[@]}" |
        tar -C "$new/root" --no-same-owner --delay-directory-restore --exclude='./dev/*' -xf -
}

# Tells what the tool is at, while it is.
report_progress() {
    local told=0 line
    while sleep 0.3; do
        while IFS= read -r line; do
            told=$((told + 1))
            [[ $line != 'I: '* || $line == *' signal '* ]] || say "  ${line#I: }"
        done < <(tail -n +$((told + 1)) "$1")
        kill -0 "$MAKING" 2>/dev/null || break
    done
}

# What entering the system and adding to it count on: files to mount the machine's own over, no
# service started by a package, no package added from inside, where /var is not its own. Then it is
# tried.
finish() {
    local root=$1 name said
    for name in passwd group hosts resolv.conf; do [ -e "$root/etc/$name" ] || : >"$root/etc/$name"; done
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod +x "$root/usr/sbin/policy-rc.d"
    printf '%s\n' 'DPkg::Pre-Invoke { "echo Packages are added by a group in tools/packages. >&2; exit 1"; };' >"$root/etc/apt/inside.conf"
    # apt cannot become its own user where only one user is mapped
    printf 'APT::Sandbox::User "root";\n' >"$root/etc/apt/apt.conf.d/90one-user"
    said=$(PRIVATE=$root && use_private && inside php8.4 -v 2>&1) ||
        die "The private system was made, but PHP does not run in it (is $CACHE on a disk that lets no program run?): ${said##*$'\n'}"
}

# A half-made system may hold mounts, if whatever killed its maker left them: never delete through
# one. An ordinary user's may hold files of his subordinate users.
remove() {
    [ -e "$1" ] || return 0
    rm -rf --one-file-system -- "$1" 2>/dev/null && return 0
    [ "$EUID" -eq 0 ] || mmdebstrap --unshare-helper rm -rf --one-file-system -- "$1" >/dev/null 2>&1 || true
    rm -rf --one-file-system -- "$1" 2>/dev/null || say "Left behind, for you to delete: $1"
}

# The Debian mirror that this machine's apt uses, as lines for trixie; nothing where it has none, and
# the tool's default serves.
mirrors() {
    local ID VERSION_CODENAME
    . /etc/os-release
    [ "$ID" = debian ] || return 0
    apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 2>/dev/null |
        awk -v codename="${VERSION_CODENAME-none}" '
            $1 !~ /^(https?|ftp|file|copy):/ || $3 != "main" { next }
            $2 == codename || $2 ~ /^(old)*stable$/ { main = $1 }
            $2 == codename "-security" || $2 ~ /^(old)*stable-security$/ { security = $1 }
            END {
                if (main) print "deb " main " trixie main"
                if (main && security) print "deb " security " trixie-security main"
            }'
}

# The proxies that this machine's apt uses, as options for the tool.
proxies() {
    apt-config dump --format '%f "%v"%n' | sed -nE 's/^(Acquire::(http|https|ftp)::proxy)/--aptopt=\1/Ip'
}

# apt and dpkg take up again what an earlier, interrupted run left; where they cannot, the system is
# made anew.
add_to_private() {
    local packages log=$CACHE/apt.log again=
    packages=$(packages_of "$1")
    say "Installing in the private system: ${packages//$'\n'/ }"
    [ ! -e "$PRIVATE/unfinished" ] || again=yes
    : >"$PRIVATE/unfinished"
    if {
        as_private_root dpkg --configure -a &&
            as_private_root apt-get -q update &&
            as_private_root apt-get -q install -y --fix-broken --no-install-recommends $packages
    } >"$log" 2>&1 </dev/null 8>&-; then
        rm "$PRIVATE/unfinished"
    elif [ "$again" ] && ! reason "$log" >/dev/null; then
        say "It was interrupted earlier and cannot be taken up again."
        mv "$PRIVATE" "$PRIVATE.new.old"
        make_private "${FIRST_GROUPS[@]}" "$1"
    else
        explain "$log" "Installing the packages of \"$1\""
    fi
}

# Runs a command as the root of the private system, in which it then is all that there is.
as_private_root() {
    local unshare=(setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child=KILL) fake=
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

# ---- what went wrong

# Gives up with a sentence for a failed apt or mmdebstrap.
explain() {
    local why
    why=$(reason "$1") || why=${why:-it ended without a word}
    die "$2 failed: $why. Run the same command again once that is mended; all that was printed is in $1."
}

# The reason, from what was printed; fails when it is none of those that come from outside.
reason() {
    if grep -qiE 'no space left|enough free space|disk quota' "$1"; then
        echo "the disk is full"
    elif grep -qiE 'could not (resolve|connect)|unable to connect|connection (failed|refused|timed out|reset)|network is unreachable|failed to fetch|temporary failure|404 +not found|does not have a release file|unable to locate package' "$1"; then
        echo "the package mirror cannot be reached or lacks the packages (is there a network? are the machine's apt sources right?)"
    elif grep -qiE 'NO_PUBKEY|not signed|signature' "$1"; then
        echo "the mirror's signature cannot be checked (a newer debian-archive-keyring is needed)"
    elif grep -qiE 'read-only file system|permission denied|operation not permitted' "$1"; then
        echo "the right to is missing"
    else
        grep -E '^(E|error): ' "$1" | tail -n 1
        return 1
    fi
}
