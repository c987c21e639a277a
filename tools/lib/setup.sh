# Making the PHP 8.4 system and adding packages to it. Read only when there is something to make.

# Whole groups that the private system is made with; the others come when they are needed.
FIRST_GROUPS=(base unit clang fpm)

WHY_PRIVATE="This machine's package lists have no PHP 8.4"

# Two at once would do the same: the second waits and finds it done. The lock goes with the shell.
lock() {
    { mkdir -p "$CACHE" && exec 8>"$CACHE/lock"; } 2>/dev/null ||
        die "The folder $CACHE cannot be written to; XDG_CACHE_HOME names another place for it."
    flock --nonblock 8 || { say "Another ./dev is setting up; waiting for it …"; flock 8; }
    # put aside by one that was ended while it put a new system in its place
    [ -d "$PRIVATE" ] || [ ! -d "$PRIVATE.old" ] || mv "$PRIVATE.old" "$PRIVATE"
}

unlock() { exec 8>&-; }

set_up_system() {
    command -v apt-get >/dev/null ||
        die "Needed: $WANTED (PHP_CONFIG=/path/to/php-config names one that is not on the PATH); only Debian and Ubuntu are set up from here."
    lock
    if [ -d "$PRIVATE" ]; then
        use_private
    elif [ "${DEV_PRIVATE-}" ]; then
        WHY_PRIVATE="A private system was asked for"
        make_private
    elif ! machine_has_php; then
        make_private
    elif may_install; then
        add_to_machine $(missing_of base)
        suits php-config8.4 || die "The packages are installed, but $WHY_NOT."
        KIND=host
    else
        WHY_PRIVATE="Only root can install this machine's packages of PHP 8.4 (apt-get install --no-install-recommends $(missing_of base | paste -sd ' '))"
        make_private
    fi
    [ "$KIND" ] || use_private
    unlock
}

add_groups() {
    local group missing=()
    lock
    for group in "$@"; do has_group "$group" || missing+=("$group"); done
    if [ ${#missing[@]} -eq 0 ]; then
        :
    elif [ "$KIND" = private ]; then
        add_to_private $(packages_of "${missing[@]}" | sort -u)
    else
        add_to_machine $(missing_of "${missing[@]}")
    fi
    unlock
}

# ---- the machine itself

# Whether the machine's own packages have PHP 8.4 and can be added without touching one that is
# there.
machine_has_php() {
    [ "$(candidate php8.4-dev)" ] || refresh_lists
    [ "$(candidate php8.4-dev)" ] && ! changes_what_is_there "$(simulated $(packages_of base))"
}

candidate() { apt-cache policy "$1" 2>/dev/null | sed -n '/^  Candidate: (none)/d; s/^  Candidate: //p'; }

# What installing packages would do, as apt lists it.
simulated() { apt-get -s install --no-install-recommends "$@" 2>/dev/null | grep -E '^(Inst|Remv) ' || true; }

changes_what_is_there() { grep -qE '^(Inst [^ ]+ \[|Remv )' <<<"$1"; }

at_terminal() { [ -t 0 ] && [ -t 2 ]; }

# Whether we are root or can be; AS_ROOT goes before what needs it. At a terminal sudo asks, once
# it has been said what for.
may_install() {
    AS_ROOT=()
    [ "$EUID" -ne 0 ] || return 0
    command -v sudo >/dev/null || return 1
    AS_ROOT=(sudo -n)
    ! sudo -n true 2>/dev/null || return 0
    AS_ROOT=(sudo)
    at_terminal && { : </dev/tty; } 2>/dev/null
}

# become_root WHAT-FOR: sudo's question, if it has one.
become_root() {
    [ "$EUID" -ne 0 ] || return 0
    sudo -n true 2>/dev/null ||
        sudo -p "Password of %u for sudo, $1: " -v ||
        die "sudo did not let you, and nothing was installed. ./dev --private $COMMAND takes a private Debian 13 system in $CACHE instead."
}

# A fresh machine has no package lists yet.
refresh_lists() {
    [ -z "$(find /var/lib/apt/lists -name '*_Packages*' -mtime -1 -print -quit 2>/dev/null)" ] || return 0
    may_install || return 0
    become_root "to read the package lists (apt-get update)"
    say "Reading the package lists …"
    "${AS_ROOT[@]}" apt-get -q update >/dev/null 2>&1 </dev/null 8>&- || true
}

# Adds packages to the machine, and touches none that is there.
add_to_machine() {
    [ $# -gt 0 ] || return 0
    local changes count answer
    [ -z "${DPKG_ADMINDIR-}" ] || die "Packages are not added from inside ./dev shell; leave it first."
    may_install || die "These packages are missing, and only root can install them: apt-get install --no-install-recommends $*"
    refresh_lists
    changes=$(simulated "$@")
    ! changes_what_is_there "$changes" || die "Installing $* would upgrade or remove packages of this machine, which is left to you."
    count=$(grep -c . <<<"$changes") || true
    say "To be installed on this machine, with what they need ($count packages): $*"
    if at_terminal; then
        read -r -p "Install them? (./dev --private takes a private Debian 13 in $CACHE instead) [Y/n] " answer || answer=n
        [[ -z $answer || $answer == [Yy]* ]] || die "Nothing was installed."
    fi
    become_root "to install them"
    say "Installing …"
    # apt goes on where it must not stop
    trap 'say "Interrupted."; exit 130' INT
    "${AS_ROOT[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-remove --no-install-recommends "$@" \
        >"$CACHE/apt.log" 2>&1 </dev/null 8>&- || explain "$CACHE/apt.log" "Installing $*"
    trap - INT
}

# ---- the private system

# It is made in a folder beside and put in place by renaming, so that it is there whole or not at
# all, and an old one stays until then.
make_private() {
    local new=$PRIVATE.new.$$ log=$CACHE/setup.log old temporary=$CACHE
    for old in "$PRIVATE".new.* "$PRIVATE.old"; do remove "$old"; done
    # the tool's root folder, which an ordinary user's subordinate users must be able to enter
    [ "$EUID" -eq 0 ] || temporary=/var/tmp
    check_means "$temporary"
    say "$WHY_PRIVATE: making a private Debian 13 system (1 GB, about a minute)"
    say "  in $PRIVATE"
    mkdir "$new"
    MADE=("$new")
    make_temporary "$temporary"
    if [ "$EUID" -eq 0 ]; then
        start_apart "$log" bootstrap "$new/root"
    else
        mkdir "$new/root"
        mkfifo "$TEMPORARY/archive"
        start_apart "$new/tar.log" unpack "$TEMPORARY/archive" "$new/root"
        start_apart "$log" bootstrap - "$TEMPORARY/archive"
    fi
    report_progress "$log"
    wait_apart || { [ ! -s "$new/tar.log" ] || cat "$new/tar.log" >>"$log"; explain "$log" "Making the private system"; }
    finish "$new/root"
    [ ! -d "$PRIVATE" ] || mv "$PRIVATE" "$PRIVATE.old"
    mv "$new/root" "$PRIVATE"
    for old in "${MADE[@]}" "$PRIVATE.old"; do remove "$old"; done
    MADE=()
    trap - EXIT HUP INT TERM
    say "The private system is ready."
}

# make_temporary FOLDER: TEMPORARY is a new folder in there for the tool. One that was killed wrote down
# what it left.
make_temporary() {
    local old
    for old in "$CACHE"/temporary.*; do
        [ -f "$old" ] && ! kill -0 "${old##*.}" 2>/dev/null || continue
        remove "$(<"$old")"
        remove "$old"
    done
    TEMPORARY=$(mktemp -d "$1/php-template.XXXXXX")
    printf '%s\n' "$TEMPORARY" >"$CACHE/temporary.$$"
    MADE+=("$TEMPORARY" "$CACHE/temporary.$$")
    chmod 755 "$TEMPORARY"
}

# What the making needs, each with a sentence of its own when it is not there; what root is to do,
# at once.
check_means() {
    local folder missing=() numbers= elsewhere="; XDG_CACHE_HOME names another place for it"
    for folder in "$CACHE" "$1"; do
        [ $(($(df -Pk "$folder" | awk 'NR == 2 { print $4 }') / 1024)) -ge 1500 ] ||
            die "The disk of $folder has less than the 1500 MB left that making a private Debian 13 system takes$elsewhere."
        runs_programs "$folder" ||
            die "The disk of $folder lets no program run (noexec), so that no system can be made there$elsewhere."
        elsewhere=
    done
    if [ "$EUID" -eq 0 ]; then
        unshare --mount true 2>/dev/null ||
            die "$WHY_PRIVATE, and it lets nobody mount (a container without the right to), which a private Debian 13 system needs."
    else
        unshare --user --map-root-user --mount true 2>/dev/null ||
            die "$WHY_PRIVATE, and this machine does not let ordinary users make name spaces, which a private Debian 13 system needs; run this as root."
        grep -qE "^($(id -un)|$EUID):" /etc/subuid 2>/dev/null && grep -qE "^($(id -un)|$EUID):" /etc/subgid 2>/dev/null ||
            numbers="usermod $(free_numbers) $(id -un)"
    fi
    command -v mmdebstrap >/dev/null || missing+=(mmdebstrap)
    [ -f /usr/share/keyrings/debian-archive-keyring.gpg ] || missing+=(debian-archive-keyring)
    [ "$EUID" -eq 0 ] || command -v newuidmap >/dev/null || missing+=(uidmap)
    if [ "$numbers" ] || { [ ${#missing[@]} -gt 0 ] && ! may_install; }; then
        if [ ${#missing[@]} -gt 0 ]; then
            numbers="apt-get install ${missing[*]}${numbers:+ && $numbers}"
            [ "$(candidate "${missing[0]}")" ] || numbers="apt-get update && $numbers"
        fi
        die "$WHY_PRIVATE; a private Debian 13 system instead needs this, once, from root: $numbers"
    fi
    add_to_machine "${missing[@]}"
}

# Subordinate numbers that nobody has yet, as options for usermod.
free_numbers() {
    { cat /etc/subuid /etc/subgid 2>/dev/null || true; } | awk -F: '
        BEGIN { first = 100000 }
        $2 + $3 > first { first = $2 + $3 }
        END { range = first "-" first + 65535; print "--add-subuids", range, "--add-subgids", range }'
}

# Whether a program in a folder can be run.
runs_programs() {
    local file status=0
    file=$(mktemp "$1/try.XXXXXX") || return
    printf '#!/bin/sh\n' >"$file"
    chmod +x "$file"
    "$file" 2>/dev/null || status=1
    rm -f "$file"
    return $status
}

# bootstrap TARGET [OUTPUT]: the tool's mounts and processes are to go away with it, however it or we
# end: root gives it name spaces of its own, and it dies with us. For an ordinary user it makes its
# own, and an archive: unpacked by him, all files are his, to delete like any others.
bootstrap() {
    local target=$1 output=${2-} options sources packages
    umask 022
    packages=$(packages_of "${FIRST_GROUPS[@]}")
    options=(--variant=minbase --include="${packages//$'\n'/,}")
    mapfile -t -O ${#options[@]} options < <(proxies)
    mapfile -t sources < <(mirrors)
    export TMPDIR=$TEMPORARY
    # a folder that everybody can enter
    cd /
    if [ "$EUID" -eq 0 ]; then
        exec setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child=KILL \
            mmdebstrap --mode=root "${options[@]}" trixie "$target" "${sources[@]}"
    fi
    die_with_us mmdebstrap --mode=unshare "${options[@]}" --include=fakeroot trixie "$target" "${sources[@]}" >"$output"
}

unpack() { exec tar -C "$2" --no-same-owner --delay-directory-restore --exclude='./dev/*' -xf "$1"; }

# Tells what the tool is at, while it is.
report_progress() {
    local told=0 line
    while sleep 0.3; do
        while IFS= read -r line; do
            told=$((told + 1))
            [[ $line != 'I: '* || $line == *' signal '* ]] || say "  ${line#I: }"
        done < <(tail -n +$((told + 1)) "$1")
        kill -0 "${APART[-1]}" 2>/dev/null || break
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
        die "The private system was made, but PHP does not run in it: ${said##*$'\n'}"
}

# A half-made system may hold mounts, if whatever killed its maker left them: never delete through
# one. An ordinary user's may hold files of his subordinate users.
remove() {
    [ -e "$1" ] || return 0
    rm -rf --one-file-system -- "$1" 2>/dev/null && return 0
    [ "$EUID" -eq 0 ] || (cd / && mmdebstrap --unshare-helper rm -rf --one-file-system -- "$1") >/dev/null 2>&1 || true
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

# The system is marked while its packages are changed, no earlier: without a network it stays as it
# was.
add_to_private() {
    local log=$CACHE/apt.log
    say "Installing in the private system: $*"
    run_apart "$log" as_private_root sh -c 'apt-get -q update && apt-get -q install -y --no-install-recommends --download-only "$@"' sh "$@" ||
        explain "$log" "Fetching the packages"
    : >"$PRIVATE/unfinished"
    run_apart "$log" as_private_root sh -c 'apt-get -q install -y --no-install-recommends "$@" && apt-get clean' sh "$@" ||
        explain "$log" "Installing the packages"
    rm "$PRIVATE/unfinished"
}

# apt and dpkg take up again what an interrupted run left, with the packages that it had fetched;
# where they cannot, another system takes this one's place.
finish_private() {
    local log=$CACHE/apt.log
    lock
    if [ -e "$PRIVATE/unfinished" ]; then
        say "The private system was interrupted while packages were added; finishing that …"
        if run_apart "$log" as_private_root sh -c 'dpkg --configure -a && apt-get -q install -y --fix-broken'; then
            rm "$PRIVATE/unfinished"
        else
            ! reason "$log" >/dev/null || explain "$log" "Finishing it"
            WHY_PRIVATE="It cannot be taken up again"
            make_private
        fi
    fi
    unlock
}

# Becomes a command of the root of the private system, in which it then is all that there is. Where
# one user is mapped, none but he can own a file, and fakeroot is not to try.
as_private_root() {
    local unshare=(setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child=KILL) fake=
    [ "$EUID" -eq 0 ] || { unshare+=(--user --map-root-user); fake=fakeroot; }
    exec "${unshare[@]}" -- /bin/sh -c '
        set -e
        system=$1 fake=$2
        shift 2
        mount --rbind /dev "$system/dev"
        mount -t proc proc "$system/proc"
        mount --bind /etc/resolv.conf "$system/etc/resolv.conf"
        exec chroot "$system" env -u APT_CONFIG PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
            DEBIAN_FRONTEND=noninteractive FAKEROOTDONTTRYCHOWN=1 $fake "$@"
    ' sh "$PRIVATE" "$fake" "$@"
}

# ---- long commands, and what is half made when they are interrupted

APART=()  # their process groups
MADE=()   # what goes away with us until it is whole

# A command, or a function that becomes one, in a process group of its own: it gets neither our Ctrl-C
# nor we its signals, and ends with us. Its output goes to a file.
start_apart() {
    local log=$1
    shift
    trap stop_apart EXIT
    trap 'exit 129' HUP
    trap 'say "Interrupted."; exit 130' INT
    trap 'exit 143' TERM
    set -m
    "$@" >"$log" 2>&1 </dev/null 8>&- &
    APART+=($!)
    set +m
}

# Becomes a command whose whole process group is killed when we are.
die_with_us() { exec setpriv --pdeathsig USR1 sh -c 'trap "kill -KILL 0" USR1; "$@" & wait $!' sh "$@"; }

# Waits for all of them; fails when one has.
wait_apart() {
    local process status=0
    for process in "${APART[@]}"; do wait "$process" || status=1; done
    APART=()
    [ ${#MADE[@]} -gt 0 ] || trap - EXIT HUP INT TERM
    return $status
}

run_apart() {
    start_apart "$@"
    wait_apart
}

# Politely first: the tools then clean up behind them.
stop_apart() {
    local status=$? process try path
    trap '' HUP INT TERM
    for process in "${APART[@]}"; do kill -TERM -- "-$process" 2>/dev/null || true; done
    for process in "${APART[@]}"; do
        for try in {1..15}; do
            kill -0 -- "-$process" 2>/dev/null || break
            sleep 0.1
        done
        kill -KILL -- "-$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    for path in "${MADE[@]}"; do remove "$path"; done
    exit $status
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
