#!/bin/sh
# release-test.sh RELEASE BUNDLE: the release script's dry run, its run with stand-ins of Apple's tools, what it refuses.
set -eu
release=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp -R "$2" Varnix.fmplugin
mkdir "out put"
plist=Varnix.fmplugin/Contents/Info.plist
binary=Varnix.fmplugin/Contents/MacOS/Varnix
version=$(sed -n '/CFBundleVersion/{n;s/.*<string>\(.*\)<.*/\1/p;}' $plist)
identity="Developer ID Application: Someone's Firm (AB12CD34EF)"
failed=0

note() {
  echo "$1"
  failed=1
}

cat >expected <<TEXT
codesign --force --timestamp --options runtime --sign 'Developer ID Application: Someone'\\''s Firm (AB12CD34EF)' Varnix.fmplugin
codesign --verify --strict --verbose=2 Varnix.fmplugin
ditto -c -k --keepParent Varnix.fmplugin 'out put/Varnix-$version-unstapled.zip'
xcrun notarytool submit 'out put/Varnix-$version-unstapled.zip' --keychain-profile varnix --wait
rm 'out put/Varnix-$version-unstapled.zip'
xcrun stapler staple Varnix.fmplugin
xcrun stapler validate Varnix.fmplugin
spctl --assess --type install --verbose=2 Varnix.fmplugin
ditto -c -k --keepParent Varnix.fmplugin 'out put/Varnix-$version.zip'
env COPYFILE_DISABLE=1 tar -czf 'out put/Varnix.fmplugin.tgz' -C . Varnix.fmplugin
TEXT
set -- --identity "$identity" --keychain-profile varnix --output "out put" Varnix.fmplugin/
"$release" --dry-run "$@" >said
diff expected said || note "the dry run prints other commands"
[ -z "$(ls "out put")" ] || note "the dry run made something"

# Apple's tools, which fail where they are called as FAILING says.
mkdir tools
cat >tools/stand-in <<'TEXT'
#!/bin/sh
call="$(basename "$0") $*"
case $call in
  "security find-identity"*) echo "  1) 0123 \"Developer ID Application: Someone's Firm (AB12CD34EF)\"" ;;
  ditto*) for made in "$@"; do :; done && : >"$made" ;;
esac
case $call in ${FAILING:-none}*) exit 65 ;; esac
TEXT
chmod +x tools/stand-in
for tool in codesign ditto security spctl xcrun; do ln -s stand-in tools/$tool; done

PATH="$work/tools:$PATH"
"$release" "$@" >said 2>&1 || note "the run fails: $(cat said)"
diff expected said || note "the run prints other commands than the dry run"
mkdir unpacked && tar -xzf "out put/Varnix.fmplugin.tgz" -C unpacked
diff -r Varnix.fmplugin unpacked/Varnix.fmplugin || note "the archive holds something else"

# A refused upload shows at the stapler, and nothing is packed then.
rm -r "out put" && mkdir "out put"
if FAILING="xcrun stapler" "$release" "$@" >said 2>&1; then note "goes on without a ticket"; fi
[ -z "$(ls "out put")" ] || note "packs what is not stapled"

# refuses MESSAGE COMMAND...: the command fails, its last line being MESSAGE.
refuses() {
  message=$1
  shift
  if "$@" >said 2>&1; then note "takes it, instead of: $message"; fi
  [ "$(tail -n 1 said)" = "release: $message" ] || note "says \"$(tail -n 1 said)\" instead of \"$message\""
}
# spoilt CHANGE MESSAGE: the dry run refuses a bundle of which the command CHANGE has spoilt something.
spoilt() {
  cp -R Varnix.fmplugin good
  eval "$1"
  refuses "$2" "$release" --dry-run --identity "$identity" --keychain-profile varnix Varnix.fmplugin
  rm -rf Varnix.fmplugin && mv good Varnix.fmplugin
}
spoilt "sed -i s/FMXT/BNDL/ $plist" "Info.plist does not say that this is a FileMaker plug-in (FMXT)"
spoilt "chmod -x $binary" "$binary is not there, or not executable"
spoilt "sed -i s/$version/9.9/ $plist" "the bundle has version 9.9, but the source has $version: build it anew"
spoilt "printf '\312\376\272\276\000\000\000\002\001\000\000\007' >$binary" \
  "$binary is not built for both x86_64 and arm64"
refuses "--identity must name a Developer ID Application certificate, the only kind that can be notarised" \
  "$release" --dry-run --identity "Apple Development: A B (AB12CD34EF)" --keychain-profile varnix Varnix.fmplugin
refuses "the keychain has no valid certificate 0123456789012345678901234567890123456789" \
  "$release" --identity 0123456789012345678901234567890123456789 --keychain-profile varnix Varnix.fmplugin
exit $failed
