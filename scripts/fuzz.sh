#!/bin/sh
# fuzz.sh BUILD SECONDS SEED: runs every fuzzer of a sanitizer build for SECONDS from its corpus, as many at a time as
# there are processors. With the SEED 0 each run is another. What is found interesting, or breaks one, is kept in
# BUILD/tests/fuzz/found.
set -eu
run='name=$(basename "$0" Fuzz.cpp)
found=$1/tests/fuzz/found/$name
mkdir -p "$found"
"$1/tests/fuzz/${name}Fuzz" -max_total_time="$2" -seed="$3" -timeout=20 -artifact_prefix="$found/" "$found" \
  "tests/fuzz/corpus/$name" > "$found.log" 2>&1 &&
  echo "$name: $(tail -n 1 "$found.log")" || { cat "$found.log"; exit 255; }'
printf '%s\n' tests/fuzz/*Fuzz.cpp | xargs -P "$(nproc)" -I {} sh -c "$run" {} "$1" "$2" "$3"
