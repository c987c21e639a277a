#!/bin/sh
# Spreads the parts over hosts with GNU parallel: parallel.sh PARTS HOST…, in the shared folder.
#
# A job that fails, and one whose host does not answer, is tried on another host; what is still missing at the end (exit
# status 1 and above) is done by the same command once more, which goes by the log.
parts=$1
shift
mkdir -p pages tries
hosts=$(printf '1/%s,' "$@")
exec parallel --will-cite --sshlogin "${hosts%,}" --workdir "$PWD" --retries 6 --joblog parallel.log --resume-failed \
    ./part.sh {} "$parts" ::: $(seq "$parts")
