#!/bin/sh
# make-sdk.sh DIRECTORY CLANG: a stand-in of the macOS SDK, good enough to compile and link the whole plug-in. C comes
# from musl, whose headers are plain enough for any target, Foundation from GNUstep, the rest from the stand-ins of the tests.
set -eu
sdk=$1
standin=$(dirname "$0")/../plugin/mac/standin
objc=$(dirname "$("$2" -print-file-name=libobjc.so)")/include/objc

rm -rf "$sdk"
mkdir -p "$sdk/usr/include/c++" "$sdk/usr/lib"
# With the times of the originals, so that a build tree finds nothing new.
cp -pR /usr/include/*-linux-musl/. "$sdk/usr/include"
cp -pRL /usr/include/c++/v1 "$sdk/usr/include/c++"
# Apple's build of this library tells the compiler which macOS each part came with; others have that switched off.
site=$sdk/usr/include/c++/v1/__config_site
sed -i -e '/_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS/d' \
  -e 's/\(_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS\) 0/\1 1/' "$site"
echo '{"CanonicalName": "macosx11.0", "Version": "11.0", "MaximumDeploymentTarget": "11.0.99"}' >"$sdk/SDKSettings.json"
# Apple's C headers show everything in every language mode, as these do when asked.
sed -i '1i #define _GNU_SOURCE' "$sdk/usr/include/features.h"
grep -v -e '#pragma once' -e include_next "$standin/fcntl.h" >>"$sdk/usr/include/fcntl.h"
cp -pR /usr/include/GNUstep/. /usr/include/Block*.h "$objc" "$sdk/usr/include"
for framework in AppKit ApplicationServices dispatch Foundation objc; do
  cp -pR "$standin/$framework" "$sdk/usr/include"
done
touch -r "$standin/fcntl.h" "$site" "$sdk/usr/include/features.h" "$sdk/usr/include/fcntl.h"

# stub FILE INSTALL_NAME: a library as the SDK has them, by name only. It has the one symbol that the linker itself wants.
stub() {
  mkdir -p "$(dirname "$sdk/$1")"
  cat >"$sdk/$1" <<TEXT
--- !tapi-tbd
tbd-version: 4
targets: [ x86_64-macos, arm64-macos ]
install-name: '$2'
exports:
  - targets: [ x86_64-macos, arm64-macos ]
    symbols: [ dyld_stub_binder ]
...
TEXT
}
stub usr/lib/libSystem.tbd /usr/lib/libSystem.B.dylib
stub usr/lib/libc++.tbd /usr/lib/libc++.1.dylib
stub usr/lib/libobjc.tbd /usr/lib/libobjc.A.dylib
for name in AppKit ApplicationServices CoreFoundation Foundation; do
  framework=System/Library/Frameworks/$name.framework
  stub $framework/$name.tbd /$framework/Versions/A/$name
done
