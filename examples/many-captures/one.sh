#!/bin/sh
# One capture: its sections as JSON Lines. A finished one is passed over.
#   one.sh CAPTURE OUT
# The capture's folder in OUT then holds
#   sections.jsonl   all of them; only a whole one has this name
#   failed           instead, and in a line: why
#   messages         what the program had to say, if anything
# QUILLON in the environment says which program it is, QUILLON_OPTIONS what else it is told.
set -eu
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname -- "$0")/lib.sh"
[ $# = 2 ] || quit "usage: ${0##*/} CAPTURE OUT"
open_out "$2"
capture=$(realpath -sm -- "$1")
! is_done "$capture" || exit 0

mkdir -p -- "$results$capture"
cd -- "$results$capture"
trap 'rm -f sections.jsonl.part' EXIT
trap 'exit 1' HUP INT TERM

code=0
# shellcheck disable=SC2086
"${QUILLON:-quillon}" json ${QUILLON_OPTIONS-} "$capture" >sections.jsonl.part 2>messages || code=$?
if [ $code = 0 ]; then
  # A disk that other machines share may say only now that it is full.
  sync sections.jsonl.part 2>>messages && mv sections.jsonl.part sections.jsonl || code=$?
fi
[ -s messages ] || rm -f messages
if [ $code = 0 ]; then
  rm -f failed
  exit 0
fi

# Room for the record, where the disk is full.
rm -f sections.jsonl.part
reason="ended with exit code $code"
if [ $code -gt 128 ]; then
  reason="killed by SIG$(kill -l $code)"
elif [ -e messages ]; then
  reason=$(tail -n 1 messages)
fi
printf '%s\n' "${reason#"$capture: "}" >failed
exit 1
