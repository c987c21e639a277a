# The PHP 8.4 system that everything runs in: the machine's own where it has one, else a private
# Debian 13 in the user's cache folder, whose /usr and /etc stand over the machine's for the
# processes that are started in there. All other folders stay what they are.
#
# need GROUP…      makes sure of the packages in tools/packages/GROUP.txt
# inside CMD ARG…  runs a command in there, with this directory, these streams, its exit status
# become CMD ARG…  the same in place of this shell: signals reach the command itself
#
# PHP, PHP_CONFIG and PHPIZE are its programs, once it is found. DEV_PRIVATE asks for the private one.

# A relative XDG_CACHE_HOME counts for nothing, as the rules for that variable have it.
case ${XDG_CACHE_HOME-} in
    /*) CACHE=$XDG_CACHE_HOME/php-template ;;
    *) CACHE=${HOME:-/var/tmp/php-template-$EUID}/.cache/php-template ;;
esac
PRIVATE=$CACHE/trixie

API=20240924
WANTED="PHP 8.4 (API $API), neither thread-safe nor a debug build, with phpize beside it"

KIND=    # own: a PHP that somebody else looks after; host: this machine's packages; private
KEEP=()  # what must stay visible of the machine's /usr and /etc in the private system

# Settles which system it is, and makes it when there is none. Costs nothing when settled.
find_system() {
    [ -z "$KIND" ] || return 0
    [ "${DEV_PRIVATE-}" ] || find_php
    if [ "$KIND" ]; then
        [ "$PHP_CONFIG" != /usr/bin/php-config8.4 ] || [ ! -f /var/lib/dpkg/info/php8.4-dev.list ] || KIND=host
    elif [ -d "$PRIVATE" ]; then
        use_private
    else
        . "$ROOT/tools/lib/setup.sh"
        set_up_system
    fi
    export PHP PHP_CONFIG
}

# A PHP that is there: the one that PHP_CONFIG names, or one on the PATH.
find_php() {
    local config
    if [ -n "${PHP_CONFIG-}" ]; then
        suits "$PHP_CONFIG" || die "PHP_CONFIG must name the php-config of a $WANTED: $WHY_NOT."
        KIND=own
        return
    fi
    for config in php-config8.4 php-config; do
        if command -v "$config" >/dev/null && suits "$config"; then
            KIND=own
            return
        fi
    done
}

# Whether a php-config belongs to the PHP that is needed; WHY_NOT says what is wrong with it.
suits() {
    local config api build
    config=$(command -v -- "$1") || { WHY_NOT="$1 is not a program"; return 1; }
    api=$("$config" --phpapi 2>/dev/null) || { WHY_NOT="$1 does not answer as a php-config does"; return 1; }
    [ "$api" = $API ] || { WHY_NOT="the PHP of $1 has API ${api:-unknown}"; return 1; }
    PHPIZE=${config%/*}/$(sed 's/php-config/phpize/' <<<"${config##*/}")
    [ -x "$PHPIZE" ] || { WHY_NOT="there is no $PHPIZE"; return 1; }
    PHP=$("$config" --php-binary)
    build=$("$PHP" -n -r 'echo PHP_ZTS ? "thread-safe" : (PHP_DEBUG ? "debug" : "");' 2>/dev/null) ||
        { WHY_NOT="its program, $PHP, does not run"; return 1; }
    [ -z "$build" ] || { WHY_NOT="the PHP of $1 is a $build build"; return 1; }
    PHP_CONFIG=$config
}

use_private() {
    KIND=private PHP=/usr/bin/php8.4 PHP_CONFIG=/usr/bin/php-config8.4 PHPIZE=/usr/bin/phpize8.4
}

# Sets ENTER to what goes before a command to run it in there. An ordinary user gets the right to
# mount from a name space of his own, and is himself again when the command starts.
way_in() {
    find_system
    ENTER=()
    [ "$KIND" = private ] || return 0
    ENTER=(unshare --mount)
    [ "$EUID" -eq 0 ] || ENTER=(unshare --user --map-root-user --mount)
    ENTER+=(-- /bin/sh "$ROOT/tools/lib/enter.sh" "$PRIVATE" "$EUID" "$(id -g)" "$ROOT" ${#KEEP[@]} "${KEEP[@]}")
}

inside() {
    way_in
    "${ENTER[@]}" "$@"
}

become() {
    way_in
    exec "${ENTER[@]}" "$@"
}

# What is missing of all the groups is added at once.
need() {
    find_system
    local group missing=()
    if [ "$KIND" = private ] && [ -e "$PRIVATE/unfinished" ]; then
        . "$ROOT/tools/lib/setup.sh"
        finish_private
    fi
    for group in "$@"; do
        [ -f "$ROOT/tools/packages/$group.txt" ] || die "There is no package group \"$group\" in tools/packages."
        has_group "$group" || missing+=("$group")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    . "$ROOT/tools/lib/setup.sh"
    add_groups "${missing[@]}"
}

# What the private system has is asked of its package database's files, which costs no process.
has_group() {
    if [ "$KIND" != private ]; then
        [ -z "$(missing_of "$1")" ]
        return
    fi
    local package comment info=$PRIVATE/var/lib/dpkg/info
    while read -r package comment; do
        [[ $package == [a-z0-9]* ]] || continue
        compgen -G "$info/$package.list" >/dev/null || compgen -G "$info/$package:*.list" >/dev/null || return 1
    done <"$ROOT/tools/packages/$1.txt"
}

# The package names in groups' files: the first word of each line; "#" starts a comment.
packages_of() {
    local group
    for group in "$@"; do sed -nE 's/^([a-z0-9][^[:space:]]*).*/\1/p' "$ROOT/tools/packages/$group.txt"; done
}

# The packages of groups that this machine lacks. A PHP of somebody's own has its own parts, and
# where there is no dpkg nobody can tell.
missing_of() {
    command -v dpkg-query >/dev/null || return 0
    local package installed
    installed=" $(dpkg-query -W -f='${db:Status-Status}:${Package} ' 2>/dev/null)"
    for package in $(packages_of "$@" | sort -u); do
        [[ $KIND = own && $package == *php8.4* || $installed == *" installed:$package "* ]] || printf '%s\n' "$package"
    done
}
