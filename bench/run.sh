#!/usr/bin/env bash
# Runs every benchmark program in the folder given, or those whose names are given.
set -euo pipefail
folder=$1
shift
programs=("$folder"/bench_*)
(($# > 0)) && programs=("${@/#/$folder/bench_}")
for program in "${programs[@]}"; do
  [[ -x $program && -f $program ]] || continue
  echo "== ${program##*/}"
  "$program" --benchmark_color=false
done
