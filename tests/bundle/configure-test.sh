#!/bin/sh
# configure-test.sh BUNDLE_SCRIPT SDK: a wrong plug-in for Linux, and a bundle against the vendor's framework.
set -eu
script=$1
sdk=$2
headers=$(cd "$(dirname "$script")/../sdk/FMWrapper" && pwd)
failed=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

mkdir "a b"
: >"a b/Varnix.fmx"
MACOS_SDK="$sdk" LINUX_PLUGIN="a b/Varnix.fmx" "$script" build >said 2>&1 && { echo "takes any file along"; failed=1; }
grep -q "Varnix.fmx is no Linux library" said || { cat said; failed=1; }

# The vendor's framework is not at hand, so the build ends at its headers: they are looked for in no other place. With
# our own headers in the framework, a unit compiles. The link would take the framework in place of leaving symbols open.
mkdir "a b/FMWrapper.framework"
env MACOS_SDK="$sdk" FMWRAPPER_SDK="a b" "$script" build >said 2>&1 && { echo "links nothing"; failed=1; }
ln -s "$headers" "a b/FMWrapper.framework/Headers"
make -C build/bundle/plugin core/HostText.o >said 2>&1 || { cat said; failed=1; }
link=build/bundle/plugin/CMakeFiles/plugin.dir/link.txt
grep -F -e "\"-F$work/a b\"" $link | grep -qF -e "-framework FMWrapper" || { echo "not linked to it"; failed=1; }
if grep -qF dynamic_lookup $link; then echo "leaves symbols open"; failed=1; fi
exit $failed
