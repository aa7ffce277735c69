#!/bin/sh
# check-bundle.sh BUNDLE VERSION LINUX_PLUGIN LLVM: what the bundle holds. LLVM is the directory of LLVM's tools.
set -eu
bundle=$1
binary=$bundle/Contents/MacOS/Varnix
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

note() {
  echo "$*"
  failed=1
}

# same WHAT EXPECTED: compares the words on standard input, in any order.
same() {
  found=$(tr ' ' '\n' | LC_ALL=C sort | paste -s -d ' ' | sed 's/^ *//')
  [ "$found" = "$2" ] || note "$1: $found, expected: $2"
}

(cd "$bundle" && find . -type f) | same "files" "./Contents/Info.plist ./Contents/MacOS/Varnix \
./Contents/Resources/Linux/Varnix.fmx ./Contents/_CodeSignature/CodeResources"
cmp "$3" "$bundle/Contents/Resources/Linux/Varnix.fmx" || failed=1
codesign --verify --strict "$bundle" || note "changed after it was signed"

# Through the binary form, so that only what a property list really holds comes back.
plistutil -i "$bundle/Contents/Info.plist" -f bin -o "$work/binary"
plistutil -i "$work/binary" -f xml | sed -n '/<dict>/,/<\/dict>/s/<[^>]*>//gp' | tr -d '\t' | grep . | paste -d= - - |
  same Info.plist "CFBundleDevelopmentRegion=en CFBundleExecutable=Varnix CFBundleIdentifier=com.varnix.plugin \
CFBundleInfoDictionaryVersion=6.0 CFBundleName=Varnix CFBundlePackageType=FMXT CFBundleShortVersionString=$2 \
CFBundleSignature=Vrnx CFBundleSupportedPlatforms=MacOSX CFBundleVersion=$2 LSMinimumSystemVersion=11.0"

"$4/llvm-lipo" -archs "$binary" | same "architectures" "arm64 x86_64"
for arch in arm64 x86_64; do
  "$4/llvm-lipo" "$binary" -thin $arch -output "$work/thin"
  "$4/llvm-nm" --defined-only --extern-only "$work/thin" | cut -d ' ' -f 3 | "$4/llvm-cxxfilt" -_ | sed 's/(.*//' |
    same "exports" "AppleScript::ExportFrontDocumentAsXML AppleScript::GetFrontDocumentName AppleScript::Run \
AppleScript::SaveFrontDocumentAsXML _FMExternCallProc _gFMX_ExternCallPtr"
  "$4/llvm-objdump" --macho --private-headers "$work/thin" >"$work/headers"
  awk '$1 == "minos" {print $2}' "$work/headers" | same "oldest macOS" 11.0
  sed -n 's/^ *name \/.*\/\(.*\) (offset.*/\1/p' "$work/headers" |
    same "libraries" "AppKit ApplicationServices CoreFoundation Foundation libSystem.B.dylib libc++.1.dylib"

  # The linker leaves to the host what it does not find. None of it may be the plug-in's own.
  "$4/llvm-nm" --undefined-only "$work/thin" | awk '{print $NF}' | "$4/llvm-cxxfilt" -_ >"$work/undefined"
  grep -qx _FM_Text_Assign "$work/undefined" || note "the host's functions are not undefined"
  grep -q '^std::' "$work/undefined" || note "no names of C++ are read"
  ours=$(grep '(' "$work/undefined" | grep -v -e '^std::' -e '^operator ' -e '^CF' -e '^Pasteboard[A-Z]' \
    -e '^dispatch_' || true)
  [ -z "$ours" ] || note "undefined: $ours"
  if grep atexit "$work/undefined"; then note "destroys something static, which a late job may still use"; fi
  grep -qx ___stack_chk_fail "$work/undefined" || note "functions do not check their stack"
done
exit $failed
