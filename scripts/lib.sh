# Helpers of the scripts, to be sourced by a script that has run `set -euo pipefail`.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc 2>/dev/null || echo 2)

# die TEXT...: says why on standard error and ends the script.
die() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# quietly COMMAND...: runs a command.  If the command fails, shows what it wrote and ends the script.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then
    cat "$log" >&2
    rm -f "$log"
    die "failed (exit status $status): $*"
  fi
  rm -f "$log"
}

# is_there NEED: a NEED is a command, or a header if it ends in .h or .hpp.
is_there() {
  case "$1" in
    *.h | *.hpp) echo "#include <$1>" | "${CXX:-c++}" -x c++ -std=c++20 -E - >/dev/null 2>&1 ;;
    *) command -v "$1" >/dev/null 2>&1 ;;
  esac
}

# ensure PACKAGE=NEED...: installs the Debian packages whose NEED is missing.  If it may not or cannot do so,
# prints what to install and ends the script.
ensure() {
  local pair missing=()
  for pair in "$@"; do
    is_there "${pair#*=}" || missing+=("${pair%%=*}")
  done
  [ "${#missing[@]}" -ne 0 ] || return 0

  local install="apt-get install -y --no-install-recommends ${missing[*]}" as=()
  if ! command -v apt-get >/dev/null 2>&1; then
    die "needs what Debian has in these packages: ${missing[*]}"
  elif [ "$(id -u)" -ne 0 ]; then
    # sudo may ask for the password only where somebody can type it.
    if command -v sudo >/dev/null 2>&1 && { [ -t 0 ] || sudo -n true 2>/dev/null; }; then
      as=(sudo)
    else
      die "lacks packages; run as root: apt-get update && $install"
    fi
  fi
  echo "installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  quietly ${as[@]+"${as[@]}"} apt-get update
  # shellcheck disable=SC2086 # a list of words
  quietly ${as[@]+"${as[@]}"} env DEBIAN_FRONTEND=noninteractive $install
  for pair in "$@"; do
    is_there "${pair#*=}" || die "${pair%%=*} is installed, but ${pair#*=} is not found"
  done
}

# The packages that ensure() has to install for each kind of work.
# shellcheck disable=SC2034 # for the scripts
{
  to_build=(cmake=cmake make=make g++=g++ libgmp-dev=gmp.h libcli11-dev=CLI/CLI.hpp)
  to_test=("${to_build[@]}" pkg-config=pkg-config python3=python3 libmpfr-dev=mpfr.h libgtest-dev=gtest/gtest.h)
  to_measure=("${to_test[@]}" libbenchmark-dev=benchmark/benchmark.h)
  solvers=(z3=z3 cvc5=cvc5)
}

# build PRESET FOLDER [CMAKE ARGUMENT...]: configures and builds in build/FOLDER.
build() {
  local preset=$1 folder=$root/build/$2
  shift 2
  quietly cmake -S "$root" --preset "$preset" -B "$folder" "$@"
  quietly cmake --build "$folder" --parallel "$jobs"
}

# build_target TARGET PRESET FOLDER [CMAKE ARGUMENT...]: the same for one target.
build_target() {
  local target=$1 preset=$2 folder=$root/build/$3
  shift 3
  quietly cmake -S "$root" --preset "$preset" -B "$folder" "$@"
  quietly cmake --build "$folder" --target "$target" --parallel "$jobs"
}

# run_tests FOLDER [CTEST ARGUMENT...]: runs the tests of build/FOLDER; prints the summary, or the whole log if
# a test fails.
run_tests() {
  local folder=$root/build/$1 log status=0
  shift
  log=$(mktemp)
  ctest --test-dir "$folder" --output-on-failure --no-tests=error --no-label-summary --parallel "$jobs" "$@" \
    >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -eq 0 ]; then
    sed -n '/tests passed,/,$p' "$log"
  else
    cat "$log"
  fi
  rm -f "$log"
  return "$status"
}
