#!/bin/sh
# release.sh: signs, notarises and packs the macOS product. See packaging/README.md.
set -eu

usage() {
  cat >&2 <<'TEXT'
usage: release.sh [--dry-run] --identity NAME --keychain-profile NAME [--output DIRECTORY] BUNDLE
  --identity          the certificate: "Developer ID Application: Name (TEAM)", or its SHA-1 in 40 hexadecimal digits
  --keychain-profile  where "xcrun notarytool store-credentials" keeps the account for notarising
  --output            directory for the archives; by default the bundle's own directory
  --dry-run           check what any system can check, and print the commands instead of running them
The varnix-service to pack is the one in the bundle's directory. The dSYMs, which name the functions in crash reports, stay
next to the archives. They are made from the build's object files, so build and release on the same Mac.
TEXT
  exit 2
}

fail() {
  echo "release: $1" >&2
  exit 1
}

# The arguments, quoted for a shell.
quoted() {
  line=
  for word in "$@"; do
    case $word in
      *[!A-Za-z0-9_./=:@%+-]*) word="'$(printf %s "$word" | sed "s/'/'\\\\''/g")'" ;;
    esac
    line="$line${line:+ }$word"
  done
  echo "$line"
}

run() {
  quoted "$@"
  [ -n "$dry_run" ] || "$@"
}

# The value of a key in the bundle's Info.plist, which CMake writes one element per line.
property() {
  sed -n "/<key>$1<\/key>/{n;s/.*<string>\(.*\)<\/string>.*/\1/p;}" "$bundle/Contents/Info.plist"
}

# bytes FILE OFFSET COUNT: in hexadecimal.
bytes() {
  od -An -v -tx1 -j "$2" -N "$3" "$1" | tr -d ' \n'
}

# A universal binary begins with a list of its architectures, which any system can read.
has_both_architectures() {
  [ "$(bytes "$1" 0 8)" = cafebabe00000002 ] || return 1
  case $(bytes "$1" 8 4)$(bytes "$1" 28 4) in
    010000070100000c | 0100000c01000007) return 0 ;;  # x86_64 and arm64, in either order
    *) return 1 ;;
  esac
}

# Both architectures must load the vendor's framework. The list of architectures gives the position of each slice.
links_the_host() {
  for entry in 8 28; do
    offset=$((0x$(bytes "$1" $((entry + 8)) 4)))
    size=$((0x$(bytes "$1" $((entry + 12)) 4)))
    tail -c +$((offset + 1)) "$1" | head -c $size | LC_ALL=C grep -aqF /FMWrapper.framework/ || return 1
  done
}

check_executable() {
  if [ ! -f "$1" ] || [ ! -x "$1" ]; then fail "$1 is missing or not executable"; fi
  has_both_architectures "$1" || fail "$1 is not built for both x86_64 and arm64"
}

check_bundle() {
  case $bundle in *.fmplugin) ;; *) fail "$bundle does not end in .fmplugin" ;; esac
  [ -d "$bundle" ] || fail "no such bundle: $bundle (make bundle builds it)"
  [ -f "$bundle/Contents/Info.plist" ] || fail "$bundle has no Contents/Info.plist"
  [ "$(property CFBundlePackageType)" = FMXT ] || fail "Info.plist does not declare a FileMaker plug-in (FMXT)"
  executable=$bundle/Contents/MacOS/$(property CFBundleExecutable)
  check_executable "$executable"
  links_the_host "$executable" || fail "$executable does not link FMWrapper: build it with FMWRAPPER_SDK"
  wanted=$(sed -n 's/^project(Varnix VERSION \([0-9.]*\).*/\1/p' "$(dirname "$0")/../CMakeLists.txt")
  version=$(property CFBundleShortVersionString)
  if [ "$version" != "$wanted" ] || [ "$(property CFBundleVersion)" != "$wanted" ]; then
    fail "the bundle has version $version, but the source has $wanted: build it again"
  fi
}

check_identity() {
  [ -n "$identity" ] || fail "--identity is missing"
  if ! echo "$identity" | grep -Eqx -e 'Developer ID Application: .+ \([A-Z0-9]{10}\)' -e '[0-9A-Fa-f]{40}'; then
    fail "--identity must name a Developer ID Application certificate, the only kind that Apple notarises"
  fi
  [ -n "$dry_run" ] || security find-identity -v -p codesigning | grep -Fqi "$identity" ||
    fail "the keychain has no valid certificate $identity"
}

check_profile() {
  [ -n "$profile" ] || fail "--keychain-profile is missing"
  [ -n "$dry_run" ] || xcrun notarytool history --keychain-profile "$profile" >/dev/null ||
    fail "the keychain profile $profile does not work; create it with: xcrun notarytool store-credentials"
}

check_tools() {
  [ -z "$dry_run" ] || return 0
  for tool in codesign ditto security spctl xar xcrun; do
    command -v $tool >/dev/null || fail "$tool is missing: releases need a Mac with Apple's command line tools"
  done
}

dry_run=
identity=
profile=
output=
bundle=
while [ $# -gt 0 ]; do
  case $1 in
    --dry-run) dry_run=yes ;;
    --identity | --keychain-profile | --output)
      [ $# -ge 2 ] || usage
      case $1 in
        --identity) identity=$2 ;;
        --keychain-profile) profile=$2 ;;
        --output) output=$2 ;;
      esac
      shift
      ;;
    -*) usage ;;
    *)
      [ -z "$bundle" ] || usage
      bundle=${1%/}
      ;;
  esac
  shift
done
[ -n "$bundle" ] || usage

check_bundle
service=$(dirname "$bundle")/varnix-service
check_executable "$service"
check_tools
check_identity
check_profile
[ -n "$output" ] || output=$(dirname "$bundle")
[ -d "$output" ] || fail "no such directory: $output"
output=$(cd "$output" && pwd)

source=$(cd "$(dirname "$0")/.." && pwd)
name=$(basename "$bundle")
archive=$output/$name.xar
folder=$output/${name%.fmplugin}-$version  # the folder that users unpack
upload=$folder-unstapled.zip
symbols=$folder-dSYMs
for path in "$folder" "$symbols"; do
  [ ! -e "$path" ] || fail "$path exists already"
done

# sign FILE OPTION...
sign() {
  file=$1
  shift
  run codesign --force --timestamp --options runtime "$@" --sign "$identity" "$file"
  run codesign --verify --strict --verbose=2 "$file"
}

[ -n "$dry_run" ] || trap 'rm -rf "$folder" "$upload"' EXIT
run mkdir -p "$folder/docs" "$folder/samples/snippets"  # as in the source, so that the guide's links work
run ditto "$bundle" "$folder/$name"
run cp "$service" "$folder"
for document in guide functions bridge-service designs agents third-party-licences; do
  run cp "$source/docs/$document.md" "$folder/docs"
done
run cp -R "$source/docs/images" "$folder/docs"
run cp "$source/samples/snippets/XMSC-varnix-live-push.xml" "$folder/samples/snippets"
# Without the paths of the build.
run xcrun strip -S "$folder/$name/Contents/MacOS/$(basename "$executable")" "$folder/varnix-service"
sign "$folder/$name"
sign "$folder/varnix-service" --identifier com.varnix.service

run ditto -c -k --keepParent "$folder" "$upload"
run xcrun notarytool submit "$upload" --keychain-profile "$profile" --wait
run xcrun stapler staple "$folder/$name"  # fails when the upload was not accepted; programs cannot be stapled
run xcrun stapler validate "$folder/$name"
run spctl --assess --type install --verbose=2 "$folder/$name"
run mkdir "$symbols"
run xcrun dsymutil "$executable" -o "$symbols/$name.dSYM"
run xcrun dsymutil "$service" -o "$symbols/varnix-service.dSYM"
run ditto -c -k --keepParent "$folder" "$folder.zip"
# For the script step Install Plug-In File, which refuses tar and zip archives.
run cd "$folder"  # xar stores the paths that it is given
run xar -cf "$archive" "$name"
run gzip -f "$archive"
run mv "$archive.gz" "$output/$name.gz"
