# Slurm on the hosts of the cluster: settings, made before there are hosts, and the start.

set_up_slurm() {
    local hosts=$1
    # Owned by root alone, as munged runs as root here.
    rm -rf /etc/munge /etc/slurm
    mkdir -m 700 /etc/munge
    mkdir /etc/slurm
    head -c 128 /dev/urandom >/etc/munge/munge.key
    chmod 400 /etc/munge/munge.key
    cp "$ROOT/examples/cluster/slurm.conf" /etc/slurm/slurm.conf
    [ -z "${SLURMD_TIMEOUT-}" ] || sed -i "s/^SlurmdTimeout=.*/SlurmdTimeout=$SLURMD_TIMEOUT/" /etc/slurm/slurm.conf
    cat >>/etc/slurm/slurm.conf <<END
NodeName=host[1-$hosts] CPUs=1 State=UNKNOWN
PartitionName=all Nodes=ALL Default=YES State=UP
END
    echo CgroupPlugin=disabled >/etc/slurm/cgroup.conf
}

# What a host needs, also the head: COMMAND is its daemon.
SLURM_DAEMON='
    set -e
    mkdir -m 755 -p /run/munge
    mkdir -m 700 -p /srv/slurm
    mkdir -p /srv/slurm/state /srv/slurm/spool
    munged --key-file=/etc/munge/munge.key --pid-file=/run/munge/munged.pid --socket=/run/munge/munge.socket.2 \
        --log-file=/srv/slurm/munged.log --seed-file=/srv/slurm/munged.seed'

start_slurm() {
    local n
    bash -c "$SLURM_DAEMON; slurmctld" || LOG=/srv/slurm/slurmctld.log give_up "munged or slurmctld did not start."
    for n in "$@"; do start_slurmd "$n"; done
    slurm_is_ready "$@"
}

start_slurmd() {
    ssh -n "host$1" "$SLURM_DAEMON; slurmd" ||
        LOG=/proc/$(<"$HOSTS/host$1.pid")/root/srv/slurm/slurmd.log give_up "munged or slurmd did not start on host$1."
}

# A host that was cut off for long: Slurm looks for it again some time after it is back, and at once if it calls.
wake_slurmd() { ssh -n "host$1" 'kill -HUP $(cat /run/slurmd.pid)'; }

# Waits until these hosts are free. "idle*" is one that does not answer.
slurm_is_ready() { LOG=/srv/slurm/slurmctld.log wait_for "hosts of Slurm ($*)" 60 are_idle "$@"; }
are_idle() { [ "$(sinfo -h -N -n "$(printf 'host%d,' "$@")" -o %T 2>/dev/null | grep -cx idle)" -eq $# ]; }
