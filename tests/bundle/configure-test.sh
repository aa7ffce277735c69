#!/bin/sh
# configure-test.sh BUNDLE_SCRIPT SDK: an unsuitable plug-in for Linux, and a bundle against the vendor's framework.
set -eu
script=$1
export MACOS_SDK="$2"
headers=$(cd "$(dirname "$script")/../sdk/FMWrapper" && pwd)
failed=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir -p "a b/FMWrapper.framework"
: >"a b/Varnix.fmx"

note() {
  echo "$1"
  failed=1
}

LINUX_PLUGIN="a b/Varnix.fmx" "$script" build >said 2>&1 && note "includes any file"
grep -q "Varnix.fmx is not a Linux" said || note "$(cat said)"

# Without headers the framework stops the build: no other place is searched. With the project's own headers in it, a unit
# compiles. The link takes the framework instead of leaving symbols open.
FMWRAPPER_SDK="a b" "$script" build >said 2>&1 && note "builds without the framework's headers"
ln -s "$headers" "a b/FMWrapper.framework/Headers"
make -C build/bundle/plugin core/HostText.o >said 2>&1 || note "$(cat said)"
link=build/bundle/plugin/CMakeFiles/plugin.dir/link.txt
grep -F -e "\"-F$work/a b\"" $link | grep -qF -e "-framework FMWrapper" || note "not linked to the framework"
if grep -qF dynamic_lookup $link; then note "leaves symbols open"; fi
exit $failed
