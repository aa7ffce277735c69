#!/bin/sh
# check-exports.sh LIBRARY HEADER...: the library exports the C functions that the headers declare, and no others.
set -eu
library=$1
shift
declared=$(cat "$@" | grep -o 'FM_[A-Za-z0-9_]*(' | tr -d '(' | sort -u)
exported=$(nm -D --defined-only "$library" | grep -o ' FM_[A-Za-z0-9_]*$' | tr -d ' ' | sort -u)
[ "$declared" = "$exported" ] || {
  printf 'declared:\n%s\nexported:\n%s\n' "$declared" "$exported"
  exit 1
}
