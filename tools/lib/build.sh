# Builds the extension out of tree, through phpize, configure and make, in BUILD; TEMPLATE_SO is
# the module, and PHP the program to load it. What is up to date costs nothing.
#
# build [plain|strict|asan|coverage|arm64]

# What of the checkout goes into the extension.
SOURCES=(config.m4 template_arginfo.h template.stub.php src)

SANITIZERS='-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer'
STRICT='-Wall -Wextra -Wpedantic -Werror'
CONFIGURE_OPTIONS=()

build() {
    need base
    case ${1-plain} in
        plain) build_flavour plain g++ '-g -O2' ;;
        strict)
            need clang
            build_flavour strict-g++ g++ "-O2 $STRICT"
            build_flavour strict-clang++ clang++ "-O2 $STRICT"
            ;;
        asan)
            build_flavour asan g++ "-g -O1 $SANITIZERS"
            export EXTRA_FLAGS=$SANITIZERS
            make_sanitized_php
            ;;
        coverage)
            # libtool keeps the flag from the linker, which is to bring its library
            export EXTRA_FLAGS=--coverage EXTRA_LDFLAGS='-Wl,--whole-archive,-lgcov,--no-whole-archive'
            build_flavour coverage g++ '-g -O0 --coverage'
            ;;
        arm64)
            . "$ROOT/tools/lib/arm64.sh"
            use_arm64_php
            CONFIGURE_OPTIONS=(--host=aarch64-linux-gnu)
            build_flavour arm64 aarch64-linux-gnu-g++ '-g -O2'
            ;;
    esac
}

# Each flavour has a folder of its own, in the checkout where that works: we must be able to write
# there, and libtool cannot have blanks or quotes in a path.
build_folder() {
    local plain='^[A-Za-z0-9/._+,@-]+$' place id
    id=$(cksum <<<"$ROOT" | tr ' ' -)
    for place in "$ROOT/.build" "$CACHE/build/$id" "/var/tmp/php-template-$EUID/$id"; do
        [[ $place =~ $plain ]] && mkdir -p "$place" 2>/dev/null && [ -w "$place" ] || continue
        # in a folder that is everybody's, only what is ours
        [[ $place != /var/tmp/* ]] || { [ -O "$place" ] && [ -O "${place%/*}" ]; } || continue
        printf '%s\n' "$place"
        return
    done
    die "There is no folder to build in: $ROOT and $CACHE cannot be written to."
}

build_flavour() {
    local name=$1 compiler=$2 flags=$3 folder identity
    folder=$(build_folder) || exit
    BUILD=$folder/$name TEMPLATE_SO=$folder/$name/modules/template.so
    export BUILD TEMPLATE_SO
    identity="$(identify_php) $compiler $flags $(cd "$ROOT" && printf '%s ' src/*/* | cksum)"
    ! up_to_date "$identity" || return 0

    { exec 9>"$folder/$name.lock"; } 2>/dev/null || die "$folder, in which the extension is built, cannot be written to."
    flock 9
    if ! up_to_date "$identity"; then
        say "Building the extension ($name) …"
        configured "$identity" || configure_build "$compiler" "$identity"
        make_extension "$flags"
    fi
    exec 9>&-
}

# The PHP that the build is for, so that another one, or a newer, makes a new build.
identify_php() {
    local file=$PHP_CONFIG
    [[ $KIND != private || $file != /usr/* ]] || file=$PRIVATE$PHP_CONFIG
    printf '%s %s' "$file" "$(stat -L -c '%Y %i' "$file")"
}

# Whether nothing has changed since the last build that ended well.
up_to_date() {
    [ -f "$TEMPLATE_SO" ] && [ -f "$BUILD/built" ] && configured "$1" &&
        [ -z "$(cd "$ROOT" && find "${SOURCES[@]}" -newer "$BUILD/built" -print -quit 2>/dev/null)" ]
}

configured() {
    [ -f "$BUILD/identity" ] && [ "$(<"$BUILD/identity")" = "$1" ] && [ ! "$ROOT/config.m4" -nt "$BUILD/identity" ]
}

# phpize leaves its files beside config.m4: it gets a folder of links to the sources, and make a
# tree of its own. The identity is written last, so that a build that got half-way starts afresh.
configure_build() {
    local source log=$BUILD/configure.log
    rm -rf "$BUILD"
    mkdir -p "$BUILD/checkout"
    for source in "${SOURCES[@]}"; do
        [ ! -e "$ROOT/$source" ] || ln -s "$ROOT/$source" "$BUILD/checkout/$source"
    done
    (
        cd "$BUILD/checkout" && inside "$PHPIZE" &&
            cd "$BUILD" && inside env CXX="$1" checkout/configure --enable-template --with-php-config="$PHP_CONFIG" "${CONFIGURE_OPTIONS[@]}"
    ) >"$log" 2>&1 </dev/null 9>&- || {
        tail -n 20 "$log" >&2
        die "The extension cannot be configured; the whole output is in $log."
    }
    printf '%s\n' "$2" >"$BUILD/identity"
}

# The engine's headers are not ours to warn about.
make_extension() {
    local log=$BUILD/make.log
    touch "$BUILD/started"
    inside make -C "$BUILD" -s -j"$(nproc)" CXXFLAGS="$1" EXTRA_LDFLAGS="${EXTRA_LDFLAGS-}" \
        INCLUDES="$(inside "$PHP_CONFIG" --includes | sed 's/-I/-isystem /g')" >"$log" 2>&1 </dev/null 9>&- || {
        cat "$log" >&2
        die "The extension does not build."
    }
    mv "$BUILD/started" "$BUILD/built"
}
