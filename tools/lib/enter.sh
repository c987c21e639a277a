# Runs in a mount name space of its own: lays the private system's /usr and /etc over the machine's,
# and becomes the command.
# Arguments: SYSTEM USER GROUP CHECKOUT, a number of PATHs to keep visible, these, COMMAND [ARG…]
set -e
system=$1 user=$2 group=$3 checkout=$4 kept=$5
shift 5
here=$(pwd -P)

# Shows a file or folder of the machine at its own place in the private system.
show() {
    if [ -d "$1" ]; then
        mkdir -p "$system$1"
    elif [ ! -e "$system$1" ]; then
        mkdir -p "$system${1%/*}"
        : >"$system$1"
    fi
    mount --bind "$1" "$system$1"
}

# Who one is, how names are resolved, and whom the machine trusts.
for file in passwd group hosts resolv.conf ssl/certs/ca-certificates.crt; do
    [ ! -e "/etc/$file" ] || [ ! -e "$system/etc/$file" ] || mount --bind "/etc/$file" "$system/etc/$file"
done

# What is about to be hidden and must not be. A folder that both have is the private system's.
for path in "$checkout" "$here"; do
    case $path in
        /usr/* | /etc/*) [ -d "$system$path" ] && [ -z "$(find "$system$path" -maxdepth 0 -empty)" ] || show "$path" ;;
    esac
done
while [ "$kept" -gt 0 ]; do
    [ -d "$1" ] && [ -d "$system$1" ] || show "$1"
    shift
    kept=$((kept - 1))
done

mount --rbind "$system/etc" /etc
# where /bin and the like are folders, not links into /usr
for folder in bin sbin lib lib64; do
    [ -L "/$folder" ] || [ ! -d "/$folder" ] || [ ! -d "$system/usr/$folder" ] || mount --bind "$system/usr/$folder" "/$folder"
done
mount --rbind "$system/usr" /usr
cd "$here"

# /var stays the machine's, so that its files can be read. What is installed in here is recorded in
# the private system, and added to from outside.
export PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8
export DPKG_ADMINDIR="$system/var/lib/dpkg" APT_CONFIG="$system/etc/apt/inside.conf"
unset DEV_PRIVATE LANGUAGE LD_LIBRARY_PATH CC CXX CPP PERL5LIB PYTHONHOME PYTHONPATH

[ "$user" != 0 ] || exec "$@"
exec unshare --user --map-user="$user" --map-group="$group" -- "$@"
