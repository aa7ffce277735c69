#!/bin/sh
# install-packages.sh GROUP...: installs the missing Debian or Ubuntu packages of the groups: plugin, service, simulator,
# test, check, and sanitizers and bench, which need no more than test. A trailing "?" marks a package that only some
# releases have, because in others a different one has its files. On a Mac, Homebrew installs the equivalents.
set -eu
[ "$(uname -s)" != Darwin ] || exec "$(dirname "$0")/install-formulae.sh" "$@"

packages=
for group in "$@"; do
  case $group in
    plugin) packages="$packages g++ cmake make pkg-config libxcb1-dev libxcb-xfixes0-dev libcurl4-openssl-dev" ;;
    service) packages="$packages nlohmann-json3-dev libsqlite3-dev libsodium-dev libboost-dev libcli11-dev librapidxml-dev
                       libicu-dev libdtl-dev" ;;
    simulator) packages="$packages libgmp-dev libmpfr-dev libicu-dev librapidxml-dev libdtl-dev libedit-dev" ;;
    test) packages="$packages libcpp-httplib-dev libpugixml-dev clang libclang-rt-dev? libgtest-dev libbenchmark-dev rapidjson-dev libssl-dev openssl curl
                    libgnustep-base-dev libblocksruntime-dev binutils xvfb xclip
                    lld llvm libc++-dev musl-dev libplist-utils chromium?"
          command -v npm >/dev/null || packages="$packages nodejs npm" ;;  # elsewhere npm comes with Node.js itself
    sanitizers | bench) ;;
    check) packages="$packages clang-format clang-tidy shellcheck" ;;
    *) echo "install-packages: unknown group $group" >&2; exit 2 ;;
  esac
done

installed() { dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null | grep -qx installed; }

missing=
for package in $packages; do
  installed "${package%\?}" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

by_hand() {
  echo "Varnix needs these packages, and $1. Please install them:" >&2
  echo " $missing" | tr -d '?' >&2
  exit 1
}
command -v apt-get >/dev/null || by_hand "this machine has no apt-get"
as_root=
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || by_hand "this user is not root and there is no sudo"
  as_root=sudo
fi

echo "Installing:$(echo "$missing" | tr -d '?')"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
$as_root apt-get update >"$log" 2>&1 || true  # an old package list may be good enough
wanted=
for package in $missing; do
  case $package in
    *\?) apt-cache show "${package%\?}" >/dev/null 2>&1 && wanted="$wanted ${package%\?}" ;;
    *) wanted="$wanted $package" ;;
  esac
done
# shellcheck disable=SC2086 # a list of words
if [ -n "$wanted" ] && ! $as_root env DEBIAN_FRONTEND=noninteractive \
     apt-get install -y --no-remove --no-install-recommends $wanted >"$log" 2>&1; then
  cat "$log" >&2
  by_hand "apt-get could not install them (see above)"
fi
