# shellcheck shell=sh
# What the scripts beside this one have in common.

quit() {
  echo "${0##*/}: $1" >&2
  exit 2
}

# The folder of all results. That of a capture is its absolute path below it, so that no two captures share one and
# no name grows too long.
open_out() {
  out=$(realpath -sm -- "$1")
  results=$out/by-capture
}

# Whether a capture is finished.
is_done() { [ -e "$results$1/sections.jsonl" ]; }

# How a run of LIST OUT begins, whoever schedules it: OUT/list has the captures, OUT/todo those without a result.
begin() {
  scheduler=$1
  [ $# -ge 3 ] || quit "usage: ${0##*/} LIST OUT [OPTION OF $scheduler]..."
  [ -r "$2" ] || quit "$2 can't be read: it is to hold the paths of the captures, one a line"
  for program in "$scheduler" jq "${QUILLON:=quillon}"; do
    command -v "$program" >/dev/null ||
      quit "$program isn't found: install it, or put it on PATH (quillon: or in QUILLON)"
  done
  QUILLON=$(realpath -- "$(command -v "$QUILLON")")
  export QUILLON
  open_out "$3"
  mkdir -p -- "$results" || exit 2
  exec 9>"$out/lock"
  flock -n 9 || quit "another run is at work on $out: wait for it, or give another folder"
  # Any bytes may be in a name.
  LC_ALL=C sed '/^$/d' -- "$2" | tr '\n' '\0' | xargs -0 -r realpath -sm -- | LC_ALL=C sort -u >"$out/list"
  [ -s "$out/list" ] || quit "$2 names no captures"
  while IFS= read -r capture; do is_done "$capture" || printf '%s\n' "$capture"; done <"$out/list" >"$out/todo"
}
