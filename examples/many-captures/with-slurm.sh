#!/bin/sh
# All captures of a list, as an array of Slurm jobs; waits for it. This folder, the captures and OUT are to be on a disk
# that all nodes share.
#   with-slurm.sh LIST OUT [OPTION OF sbatch]...
# TASKS in the environment says how many tasks the array has at most; by default as many as the cluster allows.
# Exit codes: 0 all are done, 1 some failed, 2 usage.
set -eu
here=$(dirname -- "$(realpath -- "$0")")
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$here/lib.sh"
begin sbatch "$@"
shift 2

last_job() { [ ! -e "$out/job" ] || sed 's/;.*//' "$out/job"; }

# An array goes on when who waits for it is gone.
job=$(last_job)
if [ -n "$job" ] && [ -n "$(squeue --noheader --jobs "$job" 2>/dev/null)" ]; then
  quit "job $job is still at work on $out: wait for it, or end it with scancel $job"
fi

if [ -s "$out/todo" ]; then
  captures=$(wc -l <"$out/todo")
  most=${TASKS:-$(scontrol show config | awk '$1 == "MaxArraySize" { print $3 }')}
  tasks=$((captures < most ? captures : most))
  mkdir -p "$out/log"
  : >"$out/job"
  trap 'scancel $(last_job); exit 1' HUP INT TERM
  # Its exit code is that of a task, which the gathering tells with its reasons.
  sbatch --wait --parsable --job-name=quillon --array="0-$((tasks - 1))" --chdir="$out" --output=log/%A-%a "$@" \
    "$here/task.sh" "$here" "$out" "$tasks" | tee "$out/job" | sed -u 's/^/submitted as job /' >&2
  [ -s "$out/job" ] || exit 2
  trap - HUP INT TERM
fi
exec "$here/gather.sh" "$out"
