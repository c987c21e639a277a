# Runs in a mount name space of its own: lays the private system's /usr and /etc over the machine's
# and becomes the command. Arguments: the system, user and group to be, the checkout, the command.
set -e
system=$1 user=$2 group=$3 root=$4
shift 4

# Who one is, and how names are resolved, stays as on the machine.
for file in passwd group hosts resolv.conf localtime ssl/certs/ca-certificates.crt; do
    [ ! -e "/etc/$file" ] || [ ! -e "$system/etc/$file" ] || mount --bind "/etc/$file" "$system/etc/$file"
done

# What lies below the folders that are about to be hidden, but must stay: the checkout and the
# directory that we are in, if so, and what the caller names.
here=$(pwd -P)
keep() {
    case $1 in
        /usr/* | /etc/*) ;;
        *) return 0 ;;
    esac
    [ -d "$1" ] && [ -d "$system$1" ] && return 0
    if [ -d "$1" ]; then
        mkdir -p "$system$1"
    else
        mkdir -p "$system${1%/*}"
        [ -e "$system$1" ] || : >"$system$1"
    fi
    mount --bind "$1" "$system$1"
}
keep "$root"
keep "$here"

mount --rbind "$system/etc" /etc
for folder in bin sbin lib lib64; do
    if [ -d "/$folder" ] && [ ! -L "/$folder" ] && [ -d "$system/usr/$folder" ]; then
        mount --bind "$system/usr/$folder" "/$folder"
    fi
done
mount --rbind "$system/usr" /usr

cd "$here"
PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8
export PATH LC_ALL
# /var stays the machine's, so that its files can be read; what is installed in here is recorded
# in the private system, and added to from outside.
DPKG_ADMINDIR=$system/var/lib/dpkg
APT_CONFIG=$system/etc/apt/inside.conf
export DPKG_ADMINDIR APT_CONFIG
unset LD_LIBRARY_PATH LANGUAGE CC CXX CPP PERL5LIB PYTHONHOME PYTHONPATH

[ "$user" != 0 ] || exec "$@"
exec unshare --user --map-user="$user" --map-group="$group" -- "$@"
