# The shell on the head: the functions of the cluster are commands in there.
. "$CLUSTER/lib.sh"
. "$CLUSTER/slurm.sh"
. "$CLUSTER/web.sh"
PS1='head:\w\$ '
