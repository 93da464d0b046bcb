#!/bin/sh
# Runs targets for a number of minutes in all, shared evenly: fuzz/run.sh MINUTES [TARGET...]. MINUTES may be a
# fraction. What is found is left in build/fuzz/found, and ends the run with exit code 1; it belongs into
# fuzz/regressions/TARGET once it is mended.
set -eu
cd "$(dirname "$0")/.."
[ $# -ge 1 ] || { sed -n '2,4s/^# \{0,1\}//p' "$0" >&2; exit 2; }
minutes=$1
shift
# shellcheck disable=SC2046
[ $# -gt 0 ] || set -- $(cut -d' ' -f1 fuzz/targets.txt)
seconds=$(awk -v minutes="$minutes" -v targets=$# 'BEGIN { s = int(minutes * 60 / targets); print (s > 1 ? s : 1) }')

. cmake/ccache.sh
cmake --preset fuzz >/dev/null
targets=""
for target; do targets="$targets fuzz_$target"; done
# shellcheck disable=SC2086
cmake --build --preset fuzz --target $targets

# The first corpora: the bytes of all test cases, from whichever build of the tests is there.
cases=build/fuzz/cases
for tests in build/asan/tests/quillon_tests build/release/tests/quillon_tests build/debug/tests/quillon_tests; do
  [ -x $tests ] || continue
  rm -rf $cases
  mkdir -p $cases
  $tests --write-corpus $cases >/dev/null && break
done

# Allocations are cheaper with fewer frames kept and a smaller quarantine.
export ASAN_OPTIONS="detect_leaks=1:malloc_context_size=8:quarantine_size_mb=32${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
mkdir -p build/fuzz/found
for target; do
  kind=$(sed -n "s/^$target //p" fuzz/targets.txt)
  mkdir -p "build/fuzz/corpus/$target"
  folders="build/fuzz/corpus/$target"
  for folder in "fuzz/corpus/$kind" "fuzz/regressions/$target" "$cases/$kind"; do
    [ -d "$folder" ] && folders="$folders $folder"
  done
  status=0
  # The targets have so many features that weighing them costs more than running the target: no entropic schedule.
  # shellcheck disable=SC2086
  build/fuzz/fuzz/fuzz_$target -max_total_time="$seconds" -max_len=4200 -entropic=0 -timeout=30 \
    -rss_limit_mb=1024 -print_final_stats=1 -artifact_prefix="build/fuzz/found/$target-" \
    $folders 2>"build/fuzz/$target.log" || status=$?
  if [ $status -ne 0 ]; then
    tail -n 60 "build/fuzz/$target.log" >&2
    echo "$target: found something, see build/fuzz/found" >&2
    exit 1
  fi
  awk -v target="$target" '
    /DONE +cov:/ { for (i = 1; i < NF; ++i) if ($i == "cov:") cov = $(i + 1) }
    /^stat::number_of_executed_units:/ { executions = $2 }
    /^stat::average_exec_per_sec:/ { rate = $2 }
    END { printf "%-10s %9d executions, %6d a second, cov: %d\n", target, executions, rate, cov }
  ' "build/fuzz/$target.log"
done
