#!/usr/bin/env bash
# build_cost.sh [--json]: what the generated module costs to build from scratch: CPU seconds of its compilation and
# linking at -O2, and the size of the stripped library. Uses a folder for temporary files, removed in the end.
set -eu

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
format=${1:-}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export CCACHE_DISABLE=1

# What the module needs but is not part of it is built first, its sources are generated, and then the clock starts.
prepare() {
  cd "$root"
  cmake --preset release -B "$folder/build" -DBUILD_TESTING=OFF -DKP_WERROR=OFF
  cmake --build "$folder/build" --target generated KpIfcCore
}
prepare >"$folder/log" 2>&1 || { tail -n 40 "$folder/log" >&2; exit 1; }

# One compiler at a time, as all CPU time here is that of one thread: two that share a core each take longer.
TIMEFORMAT='%U %S'
{ time cmake --build "$folder/build" --target KpIFC2X3 --parallel 1 >"$folder/log" 2>&1; } 2>"$folder/times" ||
  { tail -n 40 "$folder/log" >&2; exit 1; }
seconds=$(LC_ALL=C awk '{ printf "%.1f", $1 + $2 }' "$folder/times")

library=$(find "$folder/build/lib" -name '*KpIFC2X3*' -type f)
strip -o "$folder/stripped" "$library"
bytes=$(wc -c <"$folder/stripped")
megabytes=$(LC_ALL=C awk -v bytes="$bytes" 'BEGIN { printf "%.2f", bytes / 1e6 }')

if [ "$format" = --json ]; then
  printf '{"moduleCpuSeconds": %s, "strippedBytes": %d}\n' "$seconds" "$bytes"
else
  printf 'module: %s CPU s to compile and link at -O2, %s MB stripped\n' "$seconds" "$megabytes"
fi
