# What the tests of the package share, to be sourced by a script that has run `set -euo pipefail` and has set
# `cmake`.  All files are made in the folder `work`, which is removed at the end.
# shellcheck shell=bash disable=SC2154

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/consumer"
cp "$here/consumer.cpp" "$work/consumer/"
cp "$here/consumer.cmake" "$work/consumer/CMakeLists.txt"
# The staging prefix is a folder of ours.
unset DESTDIR

# The warnings that consumers compile with; consumer.cmake has them, too.
warnings="-Wall -Wextra -Wconversion -Wshadow -Werror"

fail() {
  echo "failed: $*"
  exit 1
}

# step COMMAND...: runs a command.  If the command fails, shows what it wrote and ends the test.
step() {
  "$@" >"$work/log" 2>&1 || {
    cat "$work/log"
    fail "$@"
  }
}

# expect COMMAND...: a consumer prints a term that it built and one that it read.
expect() {
  local got
  got=$("$@") || fail "$* ended with $?"
  [ "$got" = "$(cat "$here/expected.txt")" ] || fail "$* printed" "$got"
}

# needs COMMAND...: ends the test as skipped, with a note, where a command is missing.
needs() {
  local command
  for command in "$@"; do
    command -v "$command" >/dev/null || {
      echo "skipped: $command is not installed"
      exit 77
    }
  done
}

# configure_consumer FOLDER COMPILER FLAGS [CMAKE ARGUMENT...]: what CMake warns about fails, too.
configure_consumer() {
  local folder=$1 compiler=$2 flags=$3
  shift 3
  step "$cmake" -S "$work/consumer" -B "$folder" -Werror=dev -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" "$@"
}

# install_and_move BUILD_FOLDER CONFIG LINKAGE: leaves what it installs in "$work/moved prefix" and checks
# that it does not depend on where it was.
install_and_move() {
  local build=$1 config=$2 linkage=$3 prefix="$work/moved prefix" library
  rm -rf "$prefix"
  step "$cmake" --install "$build" --config "$config" --prefix "$work/staged"
  mv "$work/staged" "$prefix"

  if grep -rIl -e "$build" -e "$work/staged" "$prefix" | grep .; then
    fail "these installed files name the build folder or the first prefix"
  fi
  for library in quill quill_smt2; do
    case "$linkage $(find "$prefix" -name "lib$library.a" -o -name "lib$library.so" | sed 's/.*\.//')" in
      "static a" | "shared so") ;;
      *) fail "the installed lib$library is not $linkage" ;;
    esac
  done
  if find "$prefix" -type f \( -name '*.so*' -o -path '*/bin/*' \) -exec readelf -d {} + |
    grep -E 'R(UN)?PATH.*\[(.*:)?/'; then
    fail "an installed file looks for shared libraries in a fixed folder"
  fi
  [ "$(echo '(assert true)' | "$prefix/bin/quill-smt2" print -)" = "(assert true)" ] ||
    fail "the installed quill-smt2 does not print a script"
}

# check_headers COMPILER FLAGS: every header that check_prefix found installed compiles without a warning, and
# finds what it includes.  (Whether each compiles alone is checked in the tree, by scripts/check-layers.)
check_headers() {
  local folder
  folder=$(pkg-config --variable=includedir quill)
  (cd "$folder" && find . -name '*.h' | sort | sed 's|^\./\(.*\)|#include "\1"|') >"$work/headers.cpp"
  # shellcheck disable=SC2086 # lists of flags
  step "$1" -std=c++20 $2 $warnings -fsyntax-only -I"$folder" "$work/headers.cpp"
}

# links_statically COMPILER: not every system has static forms of the C and C++ libraries and of GMP.
links_statically() {
  echo 'int main() {}' | "$1" -x c++ - -o "$work/static" -static -lgmp >/dev/null 2>&1 && return
  echo "left out: $1 cannot link wholly static programs with GMP here"
  return 1
}

# check_prefix COMPILER FLAGS CONFIG LINKAGE: what install_and_move left serves consumers through
# find_package and through pkg-config, also after another move.
check_prefix() {
  local compiler=$1 flags=$2 config=$3 linkage=$4 prefix="$work/prefix" build="$work/found" libraries
  rm -rf "$prefix" "$build"
  configure_consumer "$build" "$compiler" "$flags" -DCMAKE_PREFIX_PATH="$work/moved prefix" \
    -DCMAKE_BUILD_TYPE="$config"
  step "$cmake" --build "$build"
  expect "$build/consumer"

  # This second prefix has no blank, which pkg-config would have to quote for the shell.
  mv "$work/moved prefix" "$prefix"
  PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name quill.pc)")
  export PKG_CONFIG_PATH
  libraries=$(pkg-config --variable=libdir quill)
  expect env LD_LIBRARY_PATH="$libraries" "$build/consumer"

  # shellcheck disable=SC2046,SC2086 # lists of flags
  {
    step "$compiler" -std=c++20 $flags $warnings $(pkg-config --cflags quill-smt2) \
      -c "$work/consumer/consumer.cpp" -o "$work/consumer.o"
    step "$compiler" $flags "$work/consumer.o" -o "$work/by_pkg_config" \
      $(pkg-config --libs quill-smt2) -Wl,-rpath,"$libraries"
    expect "$work/by_pkg_config"
    if [ "$linkage" = static ] && links_statically "$compiler"; then
      step "$compiler" $flags "$work/consumer.o" -o "$work/by_pkg_config_static" -static \
        $(pkg-config --static --libs quill-smt2)
      expect "$work/by_pkg_config_static"
    fi
  }
}
