#!/bin/sh
# framework-test.sh BUNDLE_SCRIPT: builds a bundle against the vendor's framework. Without its headers the build stops,
# because no other place is searched. With the project's own headers in it, a unit compiles. The linker uses the framework
# instead of leaving symbols undefined.
set -eu
headers=$(cd "$(dirname "$1")/../sdk/FMWrapper" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir -p "a b/FMWrapper.framework"
if FMWRAPPER_SDK="a b" "$1" build; then exit 1; fi
ln -s "$headers" "a b/FMWrapper.framework/Headers"
make -C build/bundle/plugin core/HostText.o
link=build/bundle/plugin/CMakeFiles/plugin.dir/link.txt
grep -F -e "\"-F$work/a b\"" $link | grep -F -e "-framework FMWrapper"
if grep -F dynamic_lookup $link; then exit 1; fi
