#!/usr/bin/env bash
# check_static_destructors.sh NM LIBRARY...
#
# Checks that the libraries have no object that is destroyed after main(): destructors of other static objects,
# which may run later, could still need it.  An object file that registers such a destructor refers to
# __cxa_atexit.
set -euo pipefail

nm=$1
shift
status=0
for library in "$@"; do
  symbols=$("$nm" -A --undefined-only "$library")
  [ -n "$symbols" ] || { echo "$library: no symbols" >&2; exit 1; }
  if grep -w __cxa_atexit <<<"$symbols" >&2; then
    echo "$library: has static objects with destructors" >&2
    status=1
  fi
done
exit "$status"
