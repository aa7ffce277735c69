#!/bin/sh
# mac-tests.sh BUILD SDK: compiles and links, for both processors, what `make run` and `make test` build on a Mac, against
# the macOS SDK in the folder SDK. Fails on any warning, including those about what macOS 11 lacks. BUILD/mac/libraries
# stands in for Homebrew's folder.
set -eu
build=$1/mac
project=$(dirname "$0")/..
[ -d "$2/System/Library/Frameworks" ] || {
  echo "mac-tests: MACOS_SDK must name the directory of a macOS SDK, but is \"$2\"" >&2
  exit 1
}
sdk=$(cd "$2" && pwd)
mkdir -p "$build"
build=$(cd "$build" && pwd)

libraries=$build/libraries
[ -e "$libraries/complete" ] || "$project/scripts/mac-libraries.sh" "$sdk" "$libraries"

unset LIBRARY_PATH CPATH C_INCLUDE_PATH CPLUS_INCLUDE_PATH OBJC_INCLUDE_PATH  # for this system, not for macOS
export CXXFLAGS="-Werror -Wunguarded-availability" OBJCXXFLAGS="-Werror -Wunguarded-availability"
cmake -S "$project" -B "$build" --toolchain "$project/cmake/Darwin.toolchain.cmake" "-DMACOS_SDK=$sdk" \
  "-DMACOS_LIBRARIES=$libraries" "-DCMAKE_OSX_ARCHITECTURES=x86_64;arm64" -DCMAKE_UNITY_BUILD=ON > /dev/null
cmake --build "$build" -j "$(getconf _NPROCESSORS_ONLN)"
