#!/usr/bin/env bash
# Builds the writer of journals with g++ and clang++, debug and release, and compares byte for byte what these
# programs write in a number of runs.
#
# Usage: tests/journal/compare_builds.sh [RUNS [CALLS [SEED]]]     20 runs, 1000000 calls and seed 1 unless given
set -euo pipefail
. "$(dirname "$0")/../../scripts/lib.sh"
ensure clang=clang++ python3=python3

writers=()
for compiler in g++ clang++; do
  for preset in dev release; do
    folder=journal-$compiler-$preset
    build_target write_journal "$preset" "$folder" "-DCMAKE_CXX_COMPILER=$compiler"
    writers+=("$root/build/$folder/tests/write_journal")
  done
done
python3 -B "$root/tests/journal/compare_runs.py" --runs "${1:-20}" --calls "${2:-1000000}" --seed "${3:-1}" \
  "${writers[@]}"
