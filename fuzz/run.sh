#!/usr/bin/env bash
# Runs every fuzz target of the folder given for some seconds, from its seed corpus.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
folder=$1
seconds=$2
passed=0
failed=0
for target in "$folder"/fuzz_*; do
  [[ -x $target && -f $target ]] || continue
  name=${target##*/}
  work=$(mktemp -d)
  cp -r "$here/corpus/${name#fuzz_}/." "$work/" 2>/dev/null || true
  echo "== $name"
  if "$target" "$work" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=1024 -timeout=10 \
      -print_final_stats=1 -verbosity=0 -artifact_prefix="$work/" 2>"$work/log"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    tail -n 60 "$work/log" >&2
    for fault in "$work"/crash-* "$work"/leak-* "$work"/oom-* "$work"/timeout-*; do
      [[ -f $fault ]] && base64 -w 76 "$fault" | head -n 40
    done
  fi
  grep -E 'number_of_executed_units|slowest_unit' "$work/log" || true
  rm -rf "$work"
done
echo "fuzz: $passed passed, $failed failed"
((failed == 0 && passed > 0))
