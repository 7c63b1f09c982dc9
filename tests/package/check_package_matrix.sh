#!/usr/bin/env bash
# Builds the libraries inside a consumer, through add_subdirectory, static and shared.  Checks what such a
# build installs, as check_package.sh checks what a build of the tree itself installs.
#
# Usage: check_package_matrix.sh CMAKE SOURCE_FOLDER COMPILER
# The test is skipped if the compiler is not installed.
set -euo pipefail
cmake=$1 source=$2 compiler=$3
. "$(dirname "$0")/package_checks.sh"
needs "$compiler" pkg-config readelf

# Both linkages share a folder, so that the layers are compiled once.  There is no build type, because that
# compiles quickly.
for linkage in static shared; do
  [ "$linkage" = shared ] && shared=ON || shared=OFF
  configure_consumer "$work/embedding" "$compiler" "" -DQUILL_SOURCE_FOLDER="$source" \
    -DBUILD_SHARED_LIBS="$shared" -DQUILL_WERROR=ON -DQUILL_BUILD_APPS=ON -DQUILL_INSTALL=ON
  step "$cmake" --build "$work/embedding" --parallel 2
  expect "$work/embedding/consumer"
  install_and_move "$work/embedding" "" "$linkage"
  check_prefix "$compiler" "" "" "$linkage"
done
