#!/bin/sh
# install-formulae.sh GROUP...: install-packages.sh on a Mac. Installs the missing Homebrew formulae of the groups.
set -eu

fail() {
  echo "Varnix needs $1" >&2
  exit 1
}

formulae="cmake pkgconf"
for group in "$@"; do
  case $group in
    plugin) ;;
    service) formulae="$formulae boost cli11 nlohmann-json" ;;
    simulator) formulae="$formulae gmp mpfr icu4c" ;;
    test) formulae="$formulae googletest pugixml" ;;
    check | sanitizers | bench) fail "Linux for make check, test-sanitizers, fuzz and bench" ;;
    *) echo "install-packages: unknown group $group" >&2; exit 2 ;;
  esac
done

xcode-select -p >/dev/null 2>&1 || fail "Apple's command line tools. Please install them: xcode-select --install"
command -v brew >/dev/null || fail "these libraries and tools:
  $formulae
Homebrew installs them, but its brew is not in the PATH. Please get it from https://brew.sh, or if this Mac has it, run:
  eval \"\$(/opt/homebrew/bin/brew shellenv)\""

missing=
for formula in $formulae; do
  brew list --versions "$formula" >/dev/null 2>&1 || missing="$missing $formula"
done
[ -n "$missing" ] || exit 0
echo "Installing with Homebrew:$missing"
# shellcheck disable=SC2086 # a list of words
brew install --quiet $missing || fail "these formulae, which Homebrew could not install (see above):$missing"
