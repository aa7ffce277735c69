#!/bin/sh
# check-commands.sh BUILD SOURCE: which units the bundle in the build tree BUILD is made of, and how they are compiled.
set -eu
commands=$1/compile_commands.json
source=$2
failed=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# All of the plug-in but what is Linux's.
(cd "$source" && find bridge clipboard core host net schema -name '*.cpp' -o -name '*.mm') |
  grep -v -e '_linux\.cpp$' -e /x11/ -e /curl/ -e /PasteboardContent -e /UrlSyntax | LC_ALL=C sort >"$work/expected"
sed -n "s|^ *\"file\": \"$source/\(.*\)\".*|\1|p" "$commands" | LC_ALL=C sort >"$work/built"
diff "$work/expected" "$work/built" || { echo "above: the units"; failed=1; }

# every UNITS FLAG...: each command that compiles such a unit has the flags.
every() {
  units=$1
  shift
  grep -e "^ *\"command\".*$units\",\$" "$commands" >"$work/commands"
  for flag in "$@"; do
    if lacking=$(grep -v -e " $flag " "$work/commands"); then echo "without $flag: $lacking"; failed=1; fi
  done
}
every '\.cpp' -fvisibility-inlines-hidden
every '\.mm' -fno-objc-arc
every '' "-arch x86_64 -arch arm64" -mmacosx-version-min=11.0 -std=c++20 -fvisibility=hidden -fno-c++-static-destructors \
  -Wall -Wextra -O2
exit $failed
