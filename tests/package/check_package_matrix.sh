#!/usr/bin/env bash
# Builds the libraries inside of a consumer, through add_subdirectory, static and shared, and does with
# what such a build installs what check_package.sh does with a build of the tree itself.
#
# Usage: check_package_matrix.sh CMAKE SOURCE_FOLDER COMPILER
# Ends as skipped where the compiler is not installed.
set -euo pipefail
cmake=$1 source=$2 compiler=$3
. "$(dirname "$0")/package_checks.sh"
needs "$compiler" pkg-config readelf

# Both share a folder, so that the layers are compiled once; without a build type, which is quick.
for linkage in static shared; do
  [ "$linkage" = shared ] && shared=ON || shared=OFF
  configure_consumer "$work/embedding" "$compiler" "" -DQUILL_SOURCE_FOLDER="$source" \
    -DBUILD_SHARED_LIBS="$shared" -DQUILL_WERROR=ON -DQUILL_BUILD_APPS=ON -DQUILL_INSTALL=ON
  step "$cmake" --build "$work/embedding" --parallel 2
  expect "$work/embedding/consumer"
  install_and_move "$work/embedding" "" "$linkage"
  check_prefix "$compiler" "" "" "$linkage"
done
