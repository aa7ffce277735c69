#!/bin/sh
# check-bundle.sh BUNDLE VERSION LINUX_PLUGIN LLVM: checks the content of the bundle. LLVM is the directory of LLVM's tools.
set -eu
bundle=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# expect FILE: compares standard input with a file of expected lines.
data=$(dirname "$0")/data
sed "s/{version}/$2/g" "$data/contents.txt" >"$work/contents.txt"
expect() { diff "$1" - || failed=1; }

# The property list is converted to its binary form and back, so that only its real content remains.
plistutil -i "$bundle/Contents/Info.plist" -f bin -o "$work/binary"
{
  (cd "$bundle" && find . -type f | LC_ALL=C sort)
  plistutil -i "$work/binary" -f xml | sed -n '/<dict>/,/<\/dict>/s/<[^>]*>//gp' | tr -d '\t' | grep . |
    paste -d= - - | paste -s -d ' '
} | expect "$work/contents.txt"
cmp "$3" "$bundle/Contents/Resources/Linux/Varnix.fmx" || failed=1
codesign --verify --strict "$bundle" || failed=1

for arch in arm64 x86_64; do
  thin=$work/$arch
  "$4/llvm-lipo" "$bundle/Contents/MacOS/Varnix" -thin $arch -output "$thin"
  "$4/llvm-objdump" --macho --private-headers "$thin" >"$thin.headers"
  "$4/llvm-nm" --undefined-only "$thin" | awk '{print $NF}' | "$4/llvm-cxxfilt" -_ >"$thin.undefined"
  # The linker leaves undefined symbols to the host. None may be the plug-in's own, and nothing static may be destroyed,
  # because a late job may still use it.
  {
    "$4/llvm-nm" --defined-only --extern-only "$thin" | cut -d ' ' -f 3 | "$4/llvm-cxxfilt" -_ | sed 's/(.*//' |
      LC_ALL=C sort | paste -s -d ' '
    sed -n 's/^ *minos/minos/p' "$thin.headers"
    sed -n 's/^ *name \/.*\/\(.*\) (offset.*/\1/p' "$thin.headers" | LC_ALL=C sort | paste -s -d ' '
    grep -x -e _FM_Text_Assign -e ___stack_chk_fail "$thin.undefined" | paste -s -d ' '
    grep -e '(' -e atexit "$thin.undefined" | grep -v -e '^std::' -e '^operator ' -e '^CF' -e '^Pasteboard[A-Z]' \
      -e '^dispatch_' || true
  } | expect "$data/binary.txt"
done
exit $failed
