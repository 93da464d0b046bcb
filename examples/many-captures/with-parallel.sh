#!/bin/sh
# All captures of a list, on this machine's processors.
#   with-parallel.sh LIST OUT [OPTION OF parallel]...
# Exit codes: 0 all are done, 1 some failed, 2 usage.
set -eu
here=$(dirname -- "$(realpath -- "$0")")
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$here/lib.sh"
begin parallel "$@"
shift 2

# Its exit code is the number of failed jobs, which the gathering tells with their reasons; above 101 it failed itself.
if [ -s "$out/todo" ]; then
  # By the environment, as parallel would replace braces in these two.
  export here out
  # shellcheck disable=SC2016
  parallel --retries 2 --joblog "$out/joblog" "$@" --arg-file "$out/todo" '"$here/one.sh" {} "$out"' ||
    [ $? -le 101 ] || exit 2
fi
exec "$here/gather.sh" "$out"
