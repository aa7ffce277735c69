#!/bin/sh
# fuzz.sh BUILD SECONDS: runs every fuzzer of a sanitizer build for SECONDS from its corpus, as many at a time as there are
# processors. What is found interesting, or breaks one, is kept in BUILD/tests/fuzz/found.
set -eu
run='name=$(basename "$0" Fuzz)
found=${0%/*}/found/$name
mkdir -p "$found"
"$0" -max_total_time="$1" -timeout=20 -artifact_prefix="$found/" "$found" "tests/fuzz/corpus/$name" > "$found.log" 2>&1 &&
  echo "$name: $(tail -n 1 "$found.log")" || { cat "$found.log"; exit 255; }'
mkdir -p "$1/tests/fuzz/found"
printf '%s\n' "$1"/tests/fuzz/*Fuzz | xargs -P "$(nproc)" -I {} sh -c "$run" {} "$2"
