# Builds the extension out of tree, through phpize, configure and make, in BUILD; TEMPLATE_SO is
# the module. Each flavour has a folder of its own; what is up to date costs nothing.
#
# build [plain|strict|asan|coverage]

# What of the checkout goes into the extension.
SOURCES=(config.m4 template_arginfo.h template.stub.php module input template render)

# libtool cannot work below a path with blanks or quotes in it: then a folder elsewhere serves.
build_folder() {
    local plain='^[A-Za-z0-9/._+,@-]+$' place
    for place in "$ROOT/.build" "$CACHE/build/$(cksum <<<"$ROOT" | tr ' ' -)" "/var/tmp/php-template-$EUID/$(cksum <<<"$ROOT" | tr ' ' -)"; do
        if [[ $place =~ $plain ]]; then
            printf '%s\n' "$place"
            return
        fi
    done
}

build() {
    local flavour=${1-plain}
    need base
    case $flavour in
        plain) build_flavour plain g++ '-g -O2' ;;
        strict)
            build_flavour strict-g++ g++ '-O2 -Wall -Wextra -Wpedantic -Werror'
            build_flavour strict-clang++ clang++ '-O2 -Wall -Wextra -Wpedantic -Werror'
            ;;
        asan) build_flavour asan g++ '-g -O1 -fno-omit-frame-pointer -fsanitize=address,undefined' ;;
        coverage) build_flavour coverage g++ '-g -O0 --coverage' ;;
        *) die "There is no build flavour \"$flavour\": plain, strict, asan and coverage are those." ;;
    esac
}

build_flavour() {
    local name=$1 compiler=$2 flags=$3 identity folder source
    folder=$(build_folder)
    BUILD=$folder/$name
    TEMPLATE_SO=$BUILD/modules/template.so
    export BUILD TEMPLATE_SO
    identity="$CONFIG $(stat -c '%Y %i' "$([ "$KIND" != private ] || printf '%s' "$PRIVATE")$CONFIG") $compiler $flags"
    ! up_to_date "$identity" || return 0
    mkdir -p "$folder"
    exec 9>"$folder/$name.lock"
    flock 9
    if ! up_to_date "$identity"; then
        say "Building the extension ($name) …"
        configured "$identity" || configure_build "$compiler"
        printf '%s\n' "$identity" >"$BUILD/identity"
        touch "$BUILD/started"
        inside make -C "$BUILD" -s -j"$(nproc)" CXXFLAGS="$flags" >"$BUILD/make.log" 2>&1 9>&- || { cat "$BUILD/make.log" >&2; die "The extension does not build."; }
        mv "$BUILD/started" "$BUILD/built"
    fi
    exec 9>&-
}

configured() { [ "$(cat "$BUILD/identity" 2>/dev/null)" = "$1" ] && [ ! "$ROOT/config.m4" -nt "$BUILD/identity" ]; }

# Whether nothing has changed since the last build that ended well.
up_to_date() {
    [ -f "$BUILD/built" ] && configured "$1" && [ -f "$TEMPLATE_SO" ] &&
        [ -z "$(cd "$ROOT" && find "${SOURCES[@]}" -newer "$BUILD/built" -print -quit 2>/dev/null)" ]
}

# phpize leaves its files beside config.m4: it gets a folder of links to the sources, and make a
# tree of its own.
configure_build() {
    local compiler=$1 source
    rm -rf "$BUILD"
    mkdir -p "$BUILD/src"
    for source in "${SOURCES[@]}"; do
        [ ! -e "$ROOT/$source" ] || ln -s "$ROOT/$source" "$BUILD/src/$source"
    done
    {
        (cd "$BUILD/src" && inside "$PHPIZE") &&
            (cd "$BUILD" && inside env CXX="$compiler" src/configure --with-php-config="$CONFIG")
    } >"$BUILD/configure.log" 2>&1 9>&- || { tail -n 20 "$BUILD/configure.log" >&2; die "The extension cannot be configured; the whole output is in $BUILD/configure.log."; }
}
