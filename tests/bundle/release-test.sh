#!/bin/sh
# release-test.sh RELEASE BUNDLE: the commands and archives of the release script, and what it refuses.
set -eu
release=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp -R "$2" Varnix.fmplugin
out="$work/out put"
mkdir "$out"
plist=Varnix.fmplugin/Contents/Info.plist
binary=Varnix.fmplugin/Contents/MacOS/Varnix
version=$(sed -n '/CFBundleVersion/{n;s/.*<string>\(.*\)<.*/\1/p;}' $plist)
failed=0

note() {
  echo "$1"
  failed=1
}

cat >expected <<TEXT
codesign --force --timestamp --options runtime --sign 'Developer ID Application: Someone'\\''s Firm (AB12CD34EF)' Varnix.fmplugin
codesign --verify --strict --verbose=2 Varnix.fmplugin
ditto -c -k --keepParent Varnix.fmplugin '$out/Varnix-$version-unstapled.zip'
xcrun notarytool submit '$out/Varnix-$version-unstapled.zip' --keychain-profile varnix --wait
rm '$out/Varnix-$version-unstapled.zip'
xcrun stapler staple Varnix.fmplugin
xcrun stapler validate Varnix.fmplugin
spctl --assess --type install --verbose=2 Varnix.fmplugin
ditto -c -k --keepParent Varnix.fmplugin '$out/Varnix-$version.zip'
xar -cf '$out/Varnix.fmplugin.xar' Varnix.fmplugin
gzip -f '$out/Varnix.fmplugin.xar'
mv '$out/Varnix.fmplugin.xar.gz' '$out/Varnix.fmplugin.gz'
TEXT
set -- --keychain-profile varnix --output "out put" Varnix.fmplugin/ --identity
identity="Developer ID Application: Someone's Firm (AB12CD34EF)"
"$release" --dry-run "$@" "$identity" >said
diff expected said || note "the dry run prints other commands"
[ -z "$(ls "$out")" ] || note "the dry run leaves files"
"$release" "$@" "$identity" >said 2>&1 || note "the run fails: $(cat said)"
diff expected said || note "the run prints other commands than the dry run"
mkdir unpacked && gunzip -c "$out/Varnix.fmplugin.gz" | tar -xf - -C unpacked
diff -r Varnix.fmplugin unpacked/Varnix.fmplugin || note "the archive differs from the bundle"

# A refused upload shows at the stapler. Nothing may be packed then.
rm -r "$out" && mkdir "$out"
if FAILING="xcrun stapler" "$release" "$@" "$identity" >said 2>&1; then note "continues without a ticket"; fi
[ -z "$(ls "$out")" ] || note "packs a bundle without its ticket"

# refuses MESSAGE CHANGE OPTION...: with the options, and after the command CHANGE, the release fails with MESSAGE.
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
refuses "$binary is missing or not executable" "chmod -x $binary" "$@" "$identity"
refuses "the bundle has version 9.9, but the source has $version: build it again" "sed -i s/$version/9.9/ $plist" \
  "$@" "$identity"
refuses "$binary is not built for both x86_64 and arm64" \
  "printf '\312\376\272\276\000\000\000\002\001\000\000\007' >$binary" "$@" "$identity"
refuses "--identity must name a Developer ID Application certificate, the only kind that Apple notarises" : \
  "$@" "Apple Development: A B (AB12CD34EF)"
refuses "the keychain has no valid certificate 0123456789012345678901234567890123456789" : \
  "$@" 0123456789012345678901234567890123456789
exit $failed
