#!/bin/sh
# make-sdk.sh DIRECTORY CLANG GNUSTEP: makes a stand-in for the macOS SDK. The whole plug-in compiles and links against it;
# the other units for macOS compile. The C headers come from musl and suit any target, Foundation comes from GNUstep (its
# include directory), the rest from the tests' stand-ins.
set -eu
sdk=$1
standin=$(dirname "$0")/../plugin/mac/standin
objc=$(dirname "$("$2" -print-file-name=libobjc.so)")/include/objc

rm -rf "$sdk"
mkdir -p "$sdk/usr/include/c++" "$sdk/usr/lib"
# Files keep the times of the originals, so that a second run rebuilds nothing.
cp -pR /usr/include/*-linux-musl/. "$sdk/usr/include"
cp -pRL /usr/include/c++/v1 "$sdk/usr/include/c++"
# Apple's build of this library declares which macOS each part needs; other builds leave that out.
site=$sdk/usr/include/c++/v1/__config_site
sed -i -e '/_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS/d' \
  -e 's/\(_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS\) 0/\1 1/' "$site"
# Debian's build uses the locales of its own C library.
echo '#define _LIBCPP_HAS_MUSL_LIBC' >>"$site"
echo '{"CanonicalName": "macosx11.0", "Version": "11.0", "MaximumDeploymentTarget": "11.0.99"}' >"$sdk/SDKSettings.json"
# Apple's C headers declare everything in every language mode; these do on request.
sed -i '1i #define _GNU_SOURCE' "$sdk/usr/include/features.h"
grep -v -e '#pragma once' -e include_next "$standin/fcntl.h" >>"$sdk/usr/include/fcntl.h"
cat >>"$sdk/usr/include/stdlib.h" <<'TEXT'
extern "C" unsigned arc4random();
extern "C" void arc4random_buf(void*, size_t);
TEXT
echo 'extern "C" int timingsafe_bcmp(const void*, const void*, size_t);' >>"$sdk/usr/include/string.h"
cat >"$sdk/usr/include/xlocale.h" <<'TEXT'
#include <locale.h>
extern "C" int asprintf_l(char**, locale_t, const char*, ...);
extern "C" int snprintf_l(char*, size_t, locale_t, const char*, ...);
extern "C" int sscanf_l(const char*, locale_t, const char*, ...);
TEXT
cat >>"$sdk/usr/include/pthread.h" <<'TEXT'
extern "C" void* pthread_get_stackaddr_np(pthread_t);
extern "C" size_t pthread_get_stacksize_np(pthread_t);
TEXT
cp -pR "$3/." /usr/include/Block*.h "$objc" "$sdk/usr/include"
for folder in AppKit ApplicationServices CommonCrypto dispatch Foundation mach-o objc; do
  cp -pR "$standin/$folder" "$sdk/usr/include"
done
touch -r "$standin/fcntl.h" "$site" "$sdk/usr/include/features.h" "$sdk/usr/include/fcntl.h" \
  "$sdk/usr/include/stdlib.h" "$sdk/usr/include/string.h" "$sdk/usr/include/pthread.h"

# stub FILE INSTALL_NAME: writes a library's description, with only the symbol that the linker itself needs.
stub() {
  mkdir -p "$(dirname "$sdk/$1")"
  targets="targets: [ x86_64-macos, arm64-macos ]"
  printf '%s\n' '--- !tapi-tbd' 'tbd-version: 4' "$targets" "install-name: '$2'" exports: "  - $targets" \
    '    symbols: [ dyld_stub_binder ]' ... >"$sdk/$1"
}
stub usr/lib/libSystem.tbd /usr/lib/libSystem.B.dylib
stub usr/lib/libc++.tbd /usr/lib/libc++.1.dylib
stub usr/lib/libobjc.tbd /usr/lib/libobjc.A.dylib
for name in AppKit ApplicationServices CoreFoundation Foundation; do
  framework=System/Library/Frameworks/$name.framework
  stub $framework/$name.tbd /$framework/Versions/A/$name
done
