#!/usr/bin/env bash
# Runs every libFuzzer target of a fuzz build (cmake -DCW_FUZZ=ON) for the
# given number of seconds each, one after the other, and prints each one's
# executions. Usage:
#   scripts/run-fuzz.sh BUILD SECONDS keep   inputs found grow BUILD/fuzz-corpus, logs in
#                                            BUILD/fuzz-logs; crashes land in tests/fuzz/crashes/<target>/
#   scripts/run-fuzz.sh BUILD SECONDS check  (CI) everything in a temporary folder;
#                                            a crash input is printed and fails the run
# The seed corpus tests/fuzz/corpus/<target>/ is read, never written.
set -euo pipefail
build=$1
seconds=$2
mode=${3:-keep}
root=$(cd "$(dirname "$0")/.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# A small quarantine and short allocation stacks: every input makes and frees
# a spool's worth of memory, and the default quarantine (256 MB) hands out
# fresh pages to each one, which costs more page faults than the report.
# Use-after-free within one input is still caught.
export ASAN_OPTIONS=${ASAN_OPTIONS:-abort_on_error=1:detect_leaks=1:quarantine_size_mb=16:malloc_context_size=8}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

failed=()
printf '%-12s %12s %10s %8s\n' target executions "exec/s" crashes
for fuzzer in "$build"/tests/fuzz/cw_fuzz_*; do
  [ -x "$fuzzer" ] || continue
  name=${fuzzer##*/cw_fuzz_}
  [[ $name == replay_* ]] && continue
  if [ "$mode" = keep ]; then
    corpus=$build/fuzz-corpus/$name
    crashes=$root/tests/fuzz/crashes/$name
  else
    corpus=$scratch/corpus-$name
    crashes=$scratch/crashes-$name
  fi
  mkdir -p "$corpus" "$crashes"
  if [ "$mode" = keep ]; then log=$build/fuzz-logs/$name.log; else log=$scratch/$name.log; fi
  mkdir -p "$(dirname "$log")"
  status=0
  # New inputs go into the first folder only; the seeds are read from the second.
  "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=8192 \
    -print_final_stats=1 -artifact_prefix="$crashes/" \
    "$corpus" "$root/tests/fuzz/corpus/$name" >"$log" 2>&1 || status=$?
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
  found=$(find "$crashes" -type f | wc -l)
  printf '%-12s %12s %10s %8s\n' "$name" "${runs:-?}" "${rate:-?}" "$found"
  if [ "$status" -ne 0 ]; then
    failed+=("$name")
    grep -E "ERROR|SUMMARY|runtime error|fuzz target:|Test unit written" "$log" | head -20 >&2 || true
    # In CI the input is gone with the folder: show it, to be kept as a regression.
    if [ "$mode" != keep ]; then
      for input in "$crashes"/*; do [ -f "$input" ] && { echo "$input:" >&2; base64 "$input" | head -50 >&2; }; done
    fi
  fi
done
if [ ${#failed[@]} -ne 0 ]; then
  echo "fuzz: findings in ${failed[*]}" >&2
  exit 1
fi
