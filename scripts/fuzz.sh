#!/bin/sh
# fuzz.sh BUILD SECONDS: runs every fuzzer of a sanitizer build for SECONDS, from its corpus; stops at the first finding.
set -eu
for fuzzer in "$1"/tests/fuzz/*Fuzz; do
  name=$(basename "$fuzzer")
  echo "$name"
  found=$1/tests/fuzz/found/$name
  mkdir -p "$found"
  "$fuzzer" -max_total_time="$2" -artifact_prefix="$found/" "$found" "tests/fuzz/corpus/${name%Fuzz}"
done
