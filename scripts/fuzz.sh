#!/usr/bin/env bash
# Runs fuzz targets of a fuzz build (-DQUILLET_BUILD_FUZZ=ON, clang) for a fixed
# time each, starting from a scratch copy of the seed corpus in fuzz/corpus/<name>/,
# so the repository's corpus never changes. Fails when any target crashes, leaks,
# hangs past the per-input timeout or exceeds the memory limit; the input that
# did it is kept in fuzz/crashes-found/ (ignored by git).
#
#   bash scripts/fuzz.sh BUILD_DIR [SECONDS_PER_TARGET] [NAME...]
#
# NAME is a target without its fuzz_ prefix (picture_import, swf_reader...);
# without names every target in fuzz/ runs.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?usage: scripts/fuzz.sh BUILD_DIR [SECONDS_PER_TARGET] [NAME...]}
seconds=${2:-25}
shift $(( $# < 2 ? $# : 2 ))

names=("$@")
if [ ${#names[@]} -eq 0 ]; then
  for src in fuzz/fuzz_*.cpp; do
    name=$(basename "$src" .cpp)
    names+=("${name#fuzz_}")
  done
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p fuzz/crashes-found
failed=()
for name in "${names[@]}"; do
  program="$build/fuzz/fuzz_$name"
  [ -x "$program" ] || { echo "fuzz: $program is not built"; exit 1; }
  mkdir -p "$scratch/$name"
  if [ -d "fuzz/corpus/$name" ]; then cp fuzz/corpus/"$name"/* "$scratch/$name/"; fi
  start=$SECONDS
  # Bounded runs: inputs up to 16 KB, 10 s and 2 GB each (ASan included).
  if "$program" -max_total_time="$seconds" -max_len=16384 -timeout=10 -rss_limit_mb=2048 \
      -print_final_stats=1 -artifact_prefix="fuzz/crashes-found/$name-" \
      "$scratch/$name" > "$scratch/$name.log" 2>&1; then
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$scratch/$name.log")
    echo "fuzz: $name ok, ${runs:-?} runs in $((SECONDS - start)) s"
  else
    echo "fuzz: $name FAILED after $((SECONDS - start)) s"
    grep -v -e '^#[0-9]' -e '^INFO:' "$scratch/$name.log" | tail -n 60
    failed+=("$name")
  fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: failed: ${failed[*]} (inputs in fuzz/crashes-found/)"
  exit 1
fi
