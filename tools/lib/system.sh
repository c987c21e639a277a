# The PHP 8.4 system that everything runs in: the machine's own where it has one, else a private
# Debian 13 in the user's cache folder, whose /usr and /etc stand over the machine's for the
# processes that we start in there. All other folders stay what they are.
#
# need GROUP…      makes sure of the packages in tools/packages/GROUP.txt
# inside CMD ARG…  runs a command in there, with this directory, these streams, its exit status
# become CMD ARG…  the same, in place of this shell: signals reach the command itself

CACHE=${XDG_CACHE_HOME:-${HOME:-/tmp}/.cache}/php-template
PRIVATE=$CACHE/trixie

API=20240924
WANTED="PHP 8.4 (API $API), neither thread-safe nor a debug build, with phpize beside it"

KIND=      # own: a PHP that somebody else manages; host: this machine's packages; private
PHP=       # its php, php-config and phpize
PHPIZE=
ENTER=()   # what goes before a command to run it in there

# Looks at a php-config: is it the PHP that we need? Says in WHY_NOT what is wrong.
suits() {
    local config=$1 api binary build
    WHY_NOT=
    command -v -- "$config" >/dev/null || { WHY_NOT="$config is not a program"; return 1; }
    api=$("$config" --phpapi 2>/dev/null) || { WHY_NOT="$config does not answer as a php-config does"; return 1; }
    [ "$api" = $API ] || { WHY_NOT="the PHP of $config has API ${api:-unknown}"; return 1; }
    PHPIZE=$(command -v -- "$config")
    PHPIZE=${PHPIZE%/*}/$(basename -- "$PHPIZE" | sed 's/php-config/phpize/')
    [ -x "$PHPIZE" ] || { WHY_NOT="there is no phpize beside $config"; return 1; }
    binary=$("$config" --php-binary)
    build=$("$binary" -n -r 'echo PHP_ZTS ? "thread-safe" : (PHP_DEBUG ? "debug" : "");' 2>/dev/null) ||
        { WHY_NOT="$config names $binary, which does not run"; return 1; }
    [ -z "$build" ] || { WHY_NOT="the PHP of $config is a $build build"; return 1; }
    PHP=$binary
    PHP_CONFIG=$(command -v -- "$config")
}

# Settles which system it is, and makes it when there is none yet. Costs nothing when settled.
find_system() {
    [ -z "$KIND" ] || return 0
    local config
    if [ -n "${PHP_CONFIG-}" ]; then
        suits "$PHP_CONFIG" || die "PHP_CONFIG must name the php-config of a $WANTED: $WHY_NOT."
        KIND=own
    else
        for config in php-config8.4 php-config; do
            command -v "$config" >/dev/null && suits "$config" || continue
            KIND=own
            break
        done
    fi
    if [ "$KIND" = own ]; then
        [[ $PHP_CONFIG != /usr/bin/* ]] || ! command -v apt-get >/dev/null || KIND=host
    elif [ -d "$PRIVATE" ]; then
        enter_private
    else
        . "$ROOT/tools/lib/setup.sh"
        set_up_system
    fi
    export PHP PHP_CONFIG
}

# The commands that stand before a command to run it in the private system. An ordinary user gets
# the right to mount from a name space of his own, and is himself again when the command starts.
enter_private() {
    KIND=private PHP=/usr/bin/php8.4 PHP_CONFIG=/usr/bin/php-config8.4 PHPIZE=/usr/bin/phpize8.4
    local unshare=(unshare --mount)
    [ "$EUID" -eq 0 ] || unshare=(unshare --user --map-root-user --mount)
    ENTER=("${unshare[@]}" -- /bin/sh "$ROOT/tools/lib/enter.sh" "$PRIVATE" "$EUID" "$(id -g)" "$ROOT")
}

inside() {
    find_system
    "${ENTER[@]}" "$@"
}

become() {
    find_system
    exec "${ENTER[@]}" "$@"
}

need() {
    find_system
    local group
    for group in "$@"; do
        [ -f "$ROOT/tools/packages/$group.txt" ] || die "there is no package group \"$group\" in tools/packages."
        has_group "$group" || { . "$ROOT/tools/lib/setup.sh"; add_group "$group"; }
    done
}

# The package names in a group's file: one a line, "#" starts a comment.
packages_of() { sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$ROOT/tools/packages/$1.txt"; }

# Whether a group is there. The private system keeps a copy of each group's file that it has; what
# the machine itself has, dpkg knows.
has_group() {
    local stamp=$PRIVATE/var/lib/php-template/$1.txt file=$ROOT/tools/packages/$1.txt
    if [ "$KIND" = private ]; then
        [ -f "$stamp" ] && [ "$(<"$stamp")" = "$(<"$file")" ]
    else
        [ -z "$(missing_of "$1")" ]
    fi
}

# The packages of a group that this machine lacks. A PHP of somebody's own brings its own parts.
missing_of() {
    local package
    command -v dpkg-query >/dev/null || return 0
    for package in $(packages_of "$1"); do
        [ "$KIND" = own ] && [[ $package == *php8.4* ]] && continue
        [[ $(dpkg-query -W -f='${db:Status-Status} ' "$package" 2>/dev/null) == *installed* ]] || printf '%s\n' "$package"
    done
}
