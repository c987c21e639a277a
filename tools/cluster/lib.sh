# What the scripts of the cluster share. Sourced on the head.
#
# start_host N    makes host N: its own address, name, processes, mounts; sshd runs when it returns
# cut_host N      takes its link down; join_host N takes it up again
# kill_host N     kills all its processes at once; it is gone until start_host N
# traffic         bytes that went over the links of all hosts
# cpu_seconds [NAME]  what the processors did for the processes of all hosts, or for those whose program is called so
# hold_host N     lets template wait there from its next start on, so that the host is in the middle of a part; release_host N
# wait_for WHAT SECONDS COMMAND…  waits until the command succeeds, or gives up with a sentence and the end of $LOG

HOSTS=/run/cluster
NET=10.77.0

give_up() {
    printf 'cluster: %s\n' "$*" >&2
    [ ! -s "${LOG-}" ] || tail -n 8 "$LOG" | sed 's/^/    /' >&2
    # A person's shell goes on.
    [[ $- != *i* ]] || kill -INT $$
    exit 1
}

# An address that stays with N: where others remember a host's old one, they do not reach it when it comes back.
hardware_address() { printf '02:00:00:00:00:%02x' "$1"; }

start_host() {
    local name=host$1 LOG=$HOSTS/host$1.log pid
    ip link add "v$1" type veth peer name "e$1" address "$(hardware_address "$1")" && ip link set "v$1" master cluster up ||
        give_up "The link of $name could not be made."
    unshare --mount --net --pid --uts --ipc --fork --kill-child=KILL --mount-proc \
        -- "$CLUSTER/host" "$1" </dev/null >"$LOG" 2>&1 &
    disown $!
    wait_for "process of $name" 20 pgrep -P $! >/dev/null
    pid=$(pgrep -P $!)
    # The other end moves once the host has a network of its own.
    wait_for "network of $name" 20 has_own_network "$pid"
    ip link set "e$1" netns "$pid"
    echo "$pid" >"$HOSTS/$name.pid"
    wait_for "sshd on $name" 30 answers "$name"
}

# Only what ssh says goes to the log, not the sentence of whoever gives up.
answers() { ssh -n "$1" true 2>>"$HOSTS/$1.log"; }
has_link() { ip link show "$1" >/dev/null 2>&1; }

has_own_network() { [ "$(readlink "/proc/$1/ns/net")" != "$(readlink /proc/self/ns/net)" ]; }

cut_host() { ip link set "v$1" down; }
join_host() { ip link set "v$1" up; }

kill_host() {
    kill -KILL "$(<"$HOSTS/host$1.pid")"
    rm "$HOSTS/host$1.pid"
    ip link del "v$1" 2>/dev/null || true # gone already with the host's end
}

hold_host() { : >"/proc/$(<"$HOSTS/host$1.pid")/root/srv/hold"; }
release_host() { rm "/proc/$(<"$HOSTS/host$1.pid")/root/srv/hold"; }

# Seen from the bridge: what hosts receive is what their links send.
traffic() {
    awk '/^ *v[0-9]+:/ { sub(":", " "); to += $10; from += $2 } END { printf "%d %d\n", to, from }' /proc/net/dev
}

# Of all processes of the cluster that there are, and of those that they have waited for.
cpu_seconds() {
    { cat /proc/[0-9]*/stat 2>/dev/null || true; } | awk -v ticks="$(getconf CLK_TCK)" -v name="${1-}" '
        index($0, "(" name) { sub(/.*\) /, ""); sum += $12 + $13 + $14 + $15 }
        END { printf "%.2f\n", sum / ticks }'
}

wait_for() {
    local what=$1 end=$((SECONDS + $2))
    shift 2
    until "$@"; do
        [ $SECONDS -lt $end ] || give_up "The $what did not come up in time.${LOG:+ The end of ${LOG##*/}:}"
        sleep 0.1
    done
}

# What one host makes in there, the others see at once; the bytes of a file are kept until it changes.
SHARE_OPTIONS=reconnect,dir_cache=no,auto_cache

# The head's /srv/shared on the hosts, over ssh.
share_folder() {
    local n
    for n in "$@"; do LOG=$HOSTS/host$n.log wait_for "shared folder on host$n" 30 has_folder "$n"; done
}

has_folder() {
    ssh -n "host$1" "mountpoint -q /srv/shared || sshfs head:/srv/shared /srv/shared -o \
        $SHARE_OPTIONS,ServerAliveInterval=1,ServerAliveCountMax=3,ConnectTimeout=3" 2>>"$HOSTS/host$1.log"
}
