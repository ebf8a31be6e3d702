#!/usr/bin/env bash
# Runs every fuzz target of a fuzz build for SECONDS each, starting from the committed seeds, and
# prints executions and crashes per target. New inputs go to the build's own corpus, so the seeds
# in the repository stay as they are; a crash leaves its input in the build's artifacts folder.
# Usage: scripts/fuzz.sh BUILD_DIR SECONDS
set -uo pipefail
build=${1:?build directory}
seconds=${2:?seconds per target}
cd "$(dirname "$0")/.."
failed=0
summary=""
for target in "$build"/fuzz/fuzz_*; do
  [ -x "$target" ] || continue
  name=$(basename "$target")
  work="$build/corpus/$name"
  artifacts="$build/artifacts/$name"
  rm -rf "$artifacts"  # what an earlier run found was reported then
  mkdir -p "$work" "$artifacts"
  log="$build/artifacts/$name.log"
  "$target" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$artifacts/" \
    "$work" "fuzz/corpus/$name" >"$log" 2>&1
  status=$?
  runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' | tail -1)
  crashes=$(find "$artifacts" -maxdepth 1 -type f | wc -l)
  summary+=$(printf '%-22s %12s executions %3d crashes' "$name" "${runs:-?}" "$crashes")$'\n'
  if [ "$status" -ne 0 ] || [ "$crashes" -ne 0 ]; then
    failed=1
    echo "== $name failed (exit $status); the log is $log:" >&2
    tail -40 "$log" >&2
  fi
done
printf '%s' "$summary"
exit "$failed"
