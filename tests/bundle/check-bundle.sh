#!/bin/sh
# check-bundle.sh BUNDLE VERSION LINUX_PLUGIN LLVM: what the bundle holds. LLVM is the directory of LLVM's tools.
set -eu
bundle=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# Compares standard input with the expected lines.
expect() { diff "$work/expected" - || failed=1; }

cat >"$work/expected" <<TEXT
./Contents/Info.plist
./Contents/MacOS/Varnix
./Contents/Resources/Linux/Varnix.fmx
./Contents/_CodeSignature/CodeResources
CFBundleDevelopmentRegion=en CFBundleExecutable=Varnix CFBundleIdentifier=com.varnix.plugin \
CFBundleInfoDictionaryVersion=6.0 CFBundleName=Varnix CFBundlePackageType=FMXT CFBundleShortVersionString=$2 \
CFBundleSignature=Vrnx CFBundleSupportedPlatforms=MacOSX CFBundleVersion=$2 LSMinimumSystemVersion=11.0
TEXT
# The property list by way of its binary form, so that only what it really holds comes back.
plistutil -i "$bundle/Contents/Info.plist" -f bin -o "$work/binary"
{
  (cd "$bundle" && find . -type f | LC_ALL=C sort)
  plistutil -i "$work/binary" -f xml | sed -n '/<dict>/,/<\/dict>/s/<[^>]*>//gp' | tr -d '\t' | grep . |
    paste -d= - - | paste -s -d ' '
} | expect
cmp "$3" "$bundle/Contents/Resources/Linux/Varnix.fmx" || failed=1
codesign --verify --strict "$bundle" || failed=1

cat >"$work/expected" <<TEXT
AppleScript::ExportFrontDocumentAsXML AppleScript::GetFrontDocumentName AppleScript::Run \
AppleScript::SaveFrontDocumentAsXML _FMExternCallProc _gFMX_ExternCallPtr
minos 11.0
AppKit ApplicationServices CoreFoundation Foundation libSystem.B.dylib libc++.1.dylib
_FM_Text_Assign ___stack_chk_fail
TEXT
for arch in arm64 x86_64; do
  thin=$work/$arch
  "$4/llvm-lipo" "$bundle/Contents/MacOS/Varnix" -thin $arch -output "$thin"
  "$4/llvm-objdump" --macho --private-headers "$thin" >"$thin.headers"
  "$4/llvm-nm" --undefined-only "$thin" | awk '{print $NF}' | "$4/llvm-cxxfilt" -_ >"$thin.undefined"
  # The linker leaves to the host what it does not find. None of it may be the plug-in's own, and nothing static may be
  # destroyed, because a late job may still use it.
  {
    "$4/llvm-nm" --defined-only --extern-only "$thin" | cut -d ' ' -f 3 | "$4/llvm-cxxfilt" -_ | sed 's/(.*//' |
      LC_ALL=C sort | paste -s -d ' '
    sed -n 's/^ *minos/minos/p' "$thin.headers"
    sed -n 's/^ *name \/.*\/\(.*\) (offset.*/\1/p' "$thin.headers" | LC_ALL=C sort | paste -s -d ' '
    grep -x -e _FM_Text_Assign -e ___stack_chk_fail "$thin.undefined" | paste -s -d ' '
    grep -e '(' -e atexit "$thin.undefined" | grep -v -e '^std::' -e '^operator ' -e '^CF' -e '^Pasteboard[A-Z]' \
      -e '^dispatch_' || true
  } | expect
done
exit $failed
