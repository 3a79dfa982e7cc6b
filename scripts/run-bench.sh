#!/usr/bin/env bash
# Runs every benchmark of bench/ (each prints its own figures).
set -euo pipefail
build=${1:-build}
root=$(cd "$(dirname "$0")/.." && pwd)
for b in "$build"/bench/*_bench; do
  [ -x "$b" ] || continue
  echo "== $(basename "$b")"
  CW_BENCH_DATA="$root/bench/data" "$b" "${@:2}"
done
