#!/bin/sh
# Runs all targets for a number of minutes in all: fuzz/run.sh MINUTES [TARGET...]. What is found is left in
# build/fuzz/found; a finding belongs into fuzz/regressions/TARGET once it is mended.
set -eu
cd "$(dirname "$0")/.."
minutes=$1
shift
[ $# -gt 0 ] || set -- demux section descriptor document overlay packets
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
seconds=$((minutes * 60 / $#))
mkdir -p build/fuzz/found
for target; do
  mkdir -p "build/fuzz/corpus/$target" "fuzz/corpus/$target" "fuzz/regressions/$target"
  build/fuzz/fuzz/fuzz_$target -max_total_time="$seconds" -max_len=4200 -print_final_stats=1 -timeout=10 \
    -rss_limit_mb=1024 -artifact_prefix="build/fuzz/found/$target-" \
    "build/fuzz/corpus/$target" "fuzz/corpus/$target" "fuzz/regressions/$target" 2>"build/fuzz/$target.log" ||
    { tail -n 40 "build/fuzz/$target.log"; exit 1; }
  printf '%s: ' "$target"
  sed -n 's/^stat::number_of_executed_units: */executions /p' "build/fuzz/$target.log"
done
