#!/bin/sh
# check-bundle.sh BUNDLE VERSION LINUX_PLUGIN LLVM: what the bundle holds. LLVM is the directory of LLVM's tools.
set -eu
bundle=$1
binary=$bundle/Contents/MacOS/Varnix
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# same WHAT EXPECTED: compares with standard input.
same() {
  printf '%s\n' "$2" >"$work/expected"
  diff "$work/expected" - || { echo "above: $1"; failed=1; }
}

(cd "$bundle" && find . -type f | LC_ALL=C sort) | same "the files" "./Contents/Info.plist
./Contents/MacOS/Varnix
./Contents/Resources/Linux/Varnix.fmx"
cmp "$3" "$bundle/Contents/Resources/Linux/Varnix.fmx" || failed=1

# By way of the binary form, so that only what a property list really holds comes back; a line for each key.
plistutil -i "$bundle/Contents/Info.plist" -f bin -o "$work/binary"
plistutil -i "$work/binary" -f xml | sed -n '/<dict>/,/<\/dict>/s/<[^>]*>//gp' | tr -d '\t' | grep . | paste -d= - - |
  same Info.plist "CFBundleDevelopmentRegion=en
CFBundleExecutable=Varnix
CFBundleIdentifier=com.varnix.plugin
CFBundleInfoDictionaryVersion=6.0
CFBundleName=Varnix
CFBundlePackageType=FMXT
CFBundleShortVersionString=$2
CFBundleSignature=Vrnx
CFBundleSupportedPlatforms=MacOSX
CFBundleVersion=$2
LSMinimumSystemVersion=11.0"

"$4/llvm-lipo" -archs "$binary" | tr ' ' '\n' | grep . | LC_ALL=C sort | same "the architectures" "arm64
x86_64"
for arch in arm64 x86_64; do
  "$4/llvm-lipo" "$binary" -thin $arch -output "$work/thin"
  "$4/llvm-nm" --defined-only --extern-only "$work/thin" | awk '{print $3}' | LC_ALL=C sort |
    same "the exported symbols" "_FMExternCallProc
_gFMX_ExternCallPtr"
  "$4/llvm-objdump" --macho --private-headers "$work/thin" >"$work/headers"
  awk '$1 == "minos" {print $2}' "$work/headers" | same "the oldest macOS" 11.0
  sed -n 's/^ *name \(\/.*\) (offset.*/\1/p' "$work/headers" | LC_ALL=C sort |
    same "the libraries" "/System/Library/Frameworks/AppKit.framework/Versions/A/AppKit
/System/Library/Frameworks/ApplicationServices.framework/Versions/A/ApplicationServices
/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation
/System/Library/Frameworks/Foundation.framework/Versions/A/Foundation
/usr/lib/libSystem.B.dylib
/usr/lib/libc++.1.dylib"

  # The linker leaves to the host what it does not find. What is ours must not be among it.
  "$4/llvm-nm" --undefined-only "$work/thin" | awk '{print $NF}' | "$4/llvm-cxxfilt" -_ >"$work/undefined"
  grep -qx _FM_Text_Assign "$work/undefined" || { echo "the host's functions are not undefined"; failed=1; }
  grep -q '^std::' "$work/undefined" || { echo "no names of C++ are read"; failed=1; }
  ours=$(grep '(' "$work/undefined" | grep -v -e '^std::' -e '^operator ' -e '^CF' -e '^Pasteboard[A-Z]' \
    -e '^dispatch_' || true)
  [ -z "$ours" ] || { echo "undefined: $ours"; failed=1; }
  if grep atexit "$work/undefined"; then echo "destroys something static, which a late job may still use"; failed=1; fi
done
exit $failed
