#!/usr/bin/env bash
# Installs a build, moves what was installed, and builds and runs a consumer against it, through
# find_package and through pkg-config.  Also configures the consumer with the sources through
# add_subdirectory, which must bring in the libraries and nothing else.
#
# Usage: check_package.sh CMAKE SOURCE_FOLDER BUILD_FOLDER CONFIG LINKAGE COMPILER FLAGS
# LINKAGE says which libraries the build made: static or shared.
set -euo pipefail
cmake=$1 source=$2 build=$3 config=$4 linkage=$5 compiler=$6 flags=$7
. "$(dirname "$0")/package_checks.sh"
needs pkg-config readelf

configure_consumer "$work/embedding" "$compiler" "$flags" -DQUILL_SOURCE_FOLDER="$source"
step "$cmake" --build "$work/embedding" --target help
if grep -E 'quill_smt2_command|test_|example_|bench_' "$work/log"; then
  fail "through add_subdirectory come targets beside the libraries"
fi

install_and_move "$build" "$config" "$linkage"
check_prefix "$compiler" "$flags" "$config" "$linkage"
check_headers "$compiler" "$flags"
