#!/bin/sh
# What the captures of a run gave, together, as JSON Lines: OUT/services.jsonl, events.jsonl and tables.jsonl, and
# OUT/failed.jsonl with the captures that have no result, and why.
#   gather.sh OUT
# Exit codes: 0 all are done, 1 some failed, 2 usage.
set -eu
here=$(dirname -- "$(realpath -- "$0")")
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$here/lib.sh"
[ $# = 1 ] || quit "usage: ${0##*/} OUT"
open_out "$1"
[ -r "$out/list" ] || quit "$out holds no run: there is no list of captures in it"

# The failures first: they are to be read where the disk has no room for the rest.
failed=$(
  while IFS= read -r capture; do
    if is_done "$capture"; then continue; fi
    reason="no result and no record: the job never ran, was killed, or could write nothing"
    if [ -s "$results$capture/failed" ]; then
      IFS= read -r reason <"$results$capture/failed"
    fi
    printf '%s\n%s\n' "$capture" "$reason"
  done <"$out/list" | jq -n -R -c '{capture: inputs, reason: input}'
)
all=$(wc -l <"$out/list")
failures=$(printf '%s' "$failed" | grep -c '^' || true)
echo "$all captures: $((all - failures)) done, $failures failed" >&2
printf '%s' "$failed" | jq -r '"failed: \(.capture | tojson): \(.reason)"' >&2

printf '%s' "${failed:+$failed
}" >"$out/failed.jsonl"
while IFS= read -r capture; do
  ! is_done "$capture" || printf '.%s/sections.jsonl\0' "$capture"
done <"$out/list" | (cd "$results" && xargs -0 -r jq -n -c -f "$here/gather.jq") >"$out/rows" ||
  quit "the results could not be gathered, as said above"
for kind in services events tables; do
  sed -n "s/^\[\"$kind\",\(.*\)\]\$/\1/p" "$out/rows" | LC_ALL=C sort -u -o "$out/$kind.jsonl" ||
    quit "the $kind could not be gathered, as said above"
done
rm "$out/rows"
[ "$failures" = 0 ]
