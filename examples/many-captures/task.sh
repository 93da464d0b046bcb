#!/bin/sh
# One task of with-slurm.sh's array: every TASKS-th capture of OUT/todo. HERE is the folder of the scripts, as Slurm
# runs a copy of this one from elsewhere.
#   task.sh HERE OUT TASKS
set -eu
sed -n "$((SLURM_ARRAY_TASK_ID + 1))~$3p" "$2/todo" | {
  failed=0
  while IFS= read -r capture; do
    "$1/one.sh" "$capture" "$2" </dev/null || failed=1
  done
  exit $failed
}
