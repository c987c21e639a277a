#!/bin/sh
# Spreads the parts over hosts with Slurm: slurm.sh PARTS, in the shared folder. Returns when the job has ended, and fails
# when parts are missing then; the same command once more does those.
#
# --requeue: a part whose host goes down is queued again. RequeueExit in slurm.conf does the same for one that fails, at most
# five times.
parts=$1
mkdir -p pages tries
missing() { for part in $(seq "$parts"); do [ -e "pages/$part.part" ] || echo "$part"; done | paste -sd ,; }

array=$(missing)
[ "$array" ] || exit 0
job=$(sbatch --parsable --requeue --array="$array" --chdir="$PWD" --output=tries/%a.log --open-mode=append \
    --job-name=pages --wrap "./part.sh \$SLURM_ARRAY_TASK_ID $parts || exit \$((\${SLURM_RESTART_COUNT:-0} < 5 ? 75 : 1))") || exit 1
# sbatch --wait does the same, but looks every ten seconds only.
while squeue -h -j "$job" 2>&1 | grep -qv 'Invalid job id'; do sleep 1; done
[ -z "$(missing)" ]
