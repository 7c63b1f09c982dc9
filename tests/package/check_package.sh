#!/usr/bin/env bash
# Installs a build, moves what was installed, and builds and runs a consumer against it, through
# find_package and through pkg-config.  Configures the consumer with the sources through add_subdirectory,
# too, which is to bring in the libraries and nothing else.
#
# Usage: check_package.sh CMAKE SOURCE_FOLDER BUILD_FOLDER CONFIG COMPILER FLAGS
set -euo pipefail
cmake=$1 source=$2 build=$3 config=$4 compiler=$5 flags=$6
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

step() {
  "$@" >"$work/log" 2>&1 || {
    echo "failed: $*"
    cat "$work/log"
    exit 1
  }
}
# expect COMMAND...: a consumer prints a term that it built and one that it read.
expect() {
  local got
  got=$("$@")
  [ "$got" = "$(cat "$here/expected.txt")" ] || {
    printf 'failed: %s printed\n%s\n' "$*" "$got"
    exit 1
  }
}

step "$cmake" --install "$build" --config "$config" --prefix "$work/staged"
mv "$work/staged" "$work/moved prefix"
prefix="$work/moved prefix"

if grep -rIl -e "$build" -e "$work/staged" "$prefix" | grep .; then
  echo "failed: these installed files name the build folder or the first prefix"
  exit 1
fi
[ "$(echo '(assert true)' | "$prefix/bin/quill-smt2" print -)" = "(assert true)" ] || {
  echo "failed: the installed quill-smt2 does not print a script"
  exit 1
}

cp "$here/consumer.cpp" "$here/consumer.cmake" "$work"
mkdir "$work/consumer"
mv "$work/consumer.cpp" "$work/consumer/"
mv "$work/consumer.cmake" "$work/consumer/CMakeLists.txt"
step "$cmake" -S "$work/consumer" -B "$work/consumer/build" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_BUILD_TYPE="$config" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags"
step "$cmake" --build "$work/consumer/build"
expect "$work/consumer/build/consumer"

step "$cmake" -S "$work/consumer" -B "$work/consumer/embedding" -DQUILL_SOURCE_FOLDER="$source" \
  -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags"
step "$cmake" --build "$work/consumer/embedding" --target help
if grep -E 'quill_smt2_command|test_|example_|bench_' "$work/log"; then
  echo "failed: through add_subdirectory come targets beside the libraries"
  exit 1
fi

command -v pkg-config >/dev/null || {
  echo "pkg-config is not installed"
  exit 77
}
# The prefix of this second move has no blank, which pkg-config would have to quote for the shell.
mv "$prefix" "$work/prefix"
PKG_CONFIG_PATH=$(dirname "$(find "$work/prefix" -name quill.pc)")
export PKG_CONFIG_PATH
libraries=$(pkg-config --variable=libdir quill)
# shellcheck disable=SC2046,SC2086 # lists of flags
step "$compiler" -std=c++20 $flags "$work/consumer/consumer.cpp" -o "$work/by_pkg_config" \
  $(pkg-config --cflags quill-smt2) $(pkg-config --libs quill-smt2) -Wl,-rpath,"$libraries"
expect "$work/by_pkg_config"
