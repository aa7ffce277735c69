#!/bin/sh
# run-node-test.sh NODE NPM SOURCE TEST: runs SOURCE/TEST, after installing the packages of SOURCE/package-lock.json into
# the folder $PACKAGES unless they are there. Exits with status 77, which ctest shows as skipped, when npm's registry cannot
# be reached or a proxy refuses it.
set -eu
node=$1
npm=$2
source=$3

install() {
  rm -rf "$PACKAGES"
  mkdir -p "$PACKAGES"
  cp "$source/package.json" "$source/package-lock.json" "$PACKAGES"
  status=0
  log=$(cd "$PACKAGES" && "$npm" ci --ignore-scripts --no-audit --no-fund --prefer-offline --fetch-retries=1 2>&1) || status=$?
  echo "$log"
  case $status$log in
    0*) touch "$PACKAGES/installed" ;;
    *ENOTFOUND* | *EAI_AGAIN* | *ECONNREFUSED* | *ECONNRESET* | *ENETUNREACH* | *EHOSTUNREACH* | *TIMEDOUT* | *SOCKET_TIMEOUT* | \
      *SELF_SIGNED_CERT* | *UNABLE_TO_* | *" E403"* | *" E407"* | *" E50"[0-9]*)
      echo "SKIPPED: npm's registry cannot be reached"
      exit 77 ;;
    *) exit 1 ;;
  esac
}

if [ ! -e "$PACKAGES/installed" ] || ! cmp -s "$source/package-lock.json" "$PACKAGES/package-lock.json"; then install; fi
exec "$node" --test "$source/$4"
