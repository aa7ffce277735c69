#!/bin/sh
# fuzz.sh BUILD SECONDS SEED: runs every fuzzer of a sanitizer build for SECONDS from its corpus, one per processor at a
# time. SEED 0 uses the current time. Inputs that reach new code or fail are kept in BUILD/tests/fuzz/found.
set -eu
seed=$3
[ "$seed" != 0 ] || seed=$(date +%s)
echo "To repeat this run: make fuzz SECONDS=$2 SEED=$seed"
# shellcheck disable=SC2016 # expanded by the inner shell
run='name=$(basename "$0" Fuzz.cpp)
found=$1/tests/fuzz/found/$name
mkdir -p "$found"
"$1/tests/fuzz/${name}Fuzz" -max_total_time="$2" -seed="$3" -timeout=20 -artifact_prefix="$found/" "$found" \
  "tests/fuzz/corpus/$name" > "$found.log" 2>&1 &&
  echo "$name: $(tail -n 1 "$found.log")" || { cat "$found.log"; exit 255; }'
printf '%s\n' tests/fuzz/*Fuzz.cpp | xargs -P "$(getconf _NPROCESSORS_ONLN)" -I {} sh -c "$run" {} "$1" "$2" "$seed"
