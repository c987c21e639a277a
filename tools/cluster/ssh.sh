# ssh among the hosts of the cluster, in its /etc: one key for all, and nothing of the user's own.
rm -rf /etc/ssh
mkdir /etc/ssh
ssh-keygen -q -t ed25519 -N '' -C '' -f /etc/ssh/host_key
ssh-keygen -q -t ed25519 -N '' -C '' -f /etc/ssh/user_key
cp /etc/ssh/user_key.pub /etc/ssh/authorized_keys
echo "* $(</etc/ssh/host_key.pub)" >/etc/ssh/known_hosts
cat >/etc/ssh/sshd_config <<END
HostKey /etc/ssh/host_key
AuthorizedKeysFile /etc/ssh/authorized_keys
PasswordAuthentication no
UsePAM no
UseDNS no
PidFile /run/sshd.pid
MaxStartups 100
# Who tries again and again because a host is busy or down is not shut out.
PerSourcePenalties no
# A head that is cut off is not waited for.
ClientAliveInterval 1
ClientAliveCountMax 4
Subsystem sftp internal-sftp
SetEnv PATH=/srv/bin:/usr/sbin:/usr/bin:/sbin:/bin TMPDIR=/srv/tmp LC_ALL=C.UTF-8
END
cat >/etc/ssh/ssh_config <<END
IdentityFile /etc/ssh/user_key
GlobalKnownHostsFile /etc/ssh/known_hosts
UserKnownHostsFile /dev/null
BatchMode yes
# A host that is cut off is given up after four seconds.
ConnectTimeout 3
ServerAliveInterval 1
ServerAliveCountMax 4
END
/usr/sbin/sshd -E "$HOSTS/head.log"
