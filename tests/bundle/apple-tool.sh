#!/bin/sh
# Stands in for the Apple tool whose name the link to it has. A call that begins with $FAILING fails. This codesign's
# signature is a list of checksums in the bundle; this xar makes tar archives.
call="$(basename "$0") $*"
case $call in ${FAILING:-none}*) exit 65 ;; esac
for last in "$@"; do :; done
checksums() { (cd "$last" && find . -type f ! -name CodeResources -exec cksum {} + | LC_ALL=C sort -k 3); }
seal=$last/Contents/_CodeSignature/CodeResources
case $call in
  codesign*varnix-service) ;;
  "codesign --force"*) mkdir -p "$(dirname "$seal")" && checksums >"$seal" ;;
  "codesign --verify"*) checksums | diff "$seal" - ;;
  "security find-identity"*) echo "  1) 0123 \"Developer ID Application: Someone's Firm (AB12CD34EF)\"" ;;
  "ditto -c"*) : >"$last" ;;
  ditto*) cp -R "$1" "$2" ;;
  "xcrun dsymutil"*) mkdir "$last" ;;
  xar*) tar "$@" ;;
esac
