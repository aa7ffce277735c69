#!/bin/sh
# check-exports.sh LIBRARY HEADER...: checks that the library exports the C functions of the headers, and no others.
set -eu
library=$1
shift
declared=$(cat "$@" | grep -o 'FM_[A-Za-z0-9_]*(' | tr -d '(' | sort -u)
# macOS puts an underscore in front of each name.
exported=$(nm -g --defined-only "$library" | sed -n 's/.* T _\{0,1\}\(FM_[A-Za-z0-9_]*\)$/\1/p' | sort -u)
[ "$declared" = "$exported" ] || {
  printf 'declared:\n%s\nexported:\n%s\n' "$declared" "$exported"
  exit 1
}
