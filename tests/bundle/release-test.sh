#!/bin/sh
# release-test.sh RELEASE BUNDLE LLVM: tests the commands and archives of the release script, and what it refuses. LLVM is
# the directory of LLVM's tools.
set -eu
release=$1
llvm=$3
data=$(cd "$(dirname "$0")/data" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp -R "$2" Varnix.fmplugin
out="$work/out put"
mkdir "$out"
cp "$2/Contents/MacOS/Varnix" varnix-service  # any program for both architectures
source=$(cd "$(dirname "$1")/.." && pwd)
plist=Varnix.fmplugin/Contents/Info.plist
binary=Varnix.fmplugin/Contents/MacOS/Varnix
# As if linked against the vendor's framework.
"$llvm/llvm-install-name-tool" -change /System/Library/Frameworks/AppKit.framework/Versions/A/AppKit \
  @rpath/FMWrapper.framework/Versions/A/FMWrapper $binary
version=$(sed -n '/CFBundleVersion/{n;s/.*<string>\(.*\)<.*/\1/p;}' $plist)
failed=0

note() {
  echo "$1"
  failed=1
}

folder=$out/Varnix-$version
sed -e "s|{out}|$out|g" -e "s|{folder}|$folder|g" -e "s|{source}|$source|g" "$data/release.txt" >expected
set -- --keychain-profile varnix --output "out put" Varnix.fmplugin/ --identity
identity="Developer ID Application: Someone's Firm (AB12CD34EF)"
"$release" --dry-run "$@" "$identity" >said
diff expected said || note "the dry run prints other commands"
[ -z "$(ls "$out")" ] || note "the dry run leaves files"
"$release" "$@" "$identity" >said 2>&1 || note "the run fails: $(cat said)"
diff expected said || note "the run prints other commands than the dry run"
mkdir unpacked && gunzip -c "$out/Varnix.fmplugin.gz" | tar -xf - -C unpacked
[ "$(ls "$out")" = "Varnix-$version-dSYMs
Varnix-$version.zip
Varnix.fmplugin.gz" ] || note "leaves $(ls "$out")"
diff -r -x _CodeSignature Varnix.fmplugin unpacked/Varnix.fmplugin || note "the archive differs from the bundle"
codesign --verify unpacked/Varnix.fmplugin || note "the archive's bundle is not signed"

# The stapler fails if the upload was refused. Nothing may be packed then.
rm -r "$out" && mkdir "$out"
if FAILING="xcrun stapler" "$release" "$@" "$identity" >said 2>&1; then note "continues without a ticket"; fi
[ -z "$(ls "$out")" ] || note "packs a bundle without its ticket"

# refuses MESSAGE CHANGE OPTION...: after the command CHANGE, the release with these options must fail with MESSAGE.
refuses() {
  message=$1
  cp -R Varnix.fmplugin good
  eval "$2"
  shift 2
  if "$release" "$@" >said 2>&1; then note "accepted, instead of: $message"; fi
  [ "$(tail -n 1 said)" = "release: $message" ] || note "$(tail -n 1 said), expected: $message"
  rm -rf Varnix.fmplugin && mv good Varnix.fmplugin
}
refuses "Info.plist does not declare a FileMaker plug-in (FMXT)" "sed -i s/FMXT/BNDL/ $plist" "$@" "$identity"
refuses "$binary does not link FMWrapper: build it with FMWRAPPER_SDK" \
  "$llvm/llvm-lipo varnix-service -thin arm64 -output thin && $llvm/llvm-lipo $binary -replace arm64 thin -output $binary" \
  "$@" "$identity"
refuses "$binary is missing or not executable" "chmod -x $binary" "$@" "$identity"
refuses "the bundle has version 9.9, but the source has $version: build it again" "sed -i s/$version/9.9/ $plist" \
  "$@" "$identity"
refuses "$binary is not built for both x86_64 and arm64" \
  "printf '\312\376\272\276\000\000\000\002\001\000\000\007' >$binary" "$@" "$identity"
refuses "--identity must name a Developer ID Application certificate, the only kind that Apple notarises" : \
  "$@" "Apple Development: A B (AB12CD34EF)"
refuses "the keychain has no valid certificate 0123456789012345678901234567890123456789" : \
  "$@" 0123456789012345678901234567890123456789
refuses "./varnix-service is missing or not executable" "rm varnix-service" "$@" "$identity"
exit $failed
