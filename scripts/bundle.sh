#!/bin/sh
# bundle.sh BUILD: makes the macOS product, BUILD/bundle/Varnix.fmplugin, for both processors. From the environment, where
# set:
#   FMWRAPPER_SDK  directory of the vendor's FMWrapper.framework; else the bundle binds to what FileMaker has loaded
#   LINUX_PLUGIN   the Linux plug-in to take along, named Varnix.fmx; else BUILD/plugin/Varnix.fmx, when it exists
#   MACOS_SDK      directory of a macOS SDK, to build with LLVM's tools, which any system has
set -eu
build=$1
project=$(dirname "$0")/..

fail() {
  echo "bundle: $1" >&2
  exit 1
}

# CMake's own message would come after a page of others.
directory() {
  (cd "$2" 2>/dev/null && pwd) || fail "$1: there is no directory $2"
}

toolchain=
if [ -n "${MACOS_SDK:-}" ]; then
  sdk=$(directory MACOS_SDK "$MACOS_SDK")
  toolchain=$project/cmake/Darwin.toolchain.cmake
  unset LIBRARY_PATH CPATH C_INCLUDE_PATH CPLUS_INCLUDE_PATH OBJC_INCLUDE_PATH  # of this system, not of macOS
elif [ "$(uname -s)" != Darwin ]; then
  fail "this needs a Mac with CMake and Apple's command line tools. Elsewhere it needs clang, lld and llvm, and a macOS SDK:
  make bundle MACOS_SDK=path/to/MacOSX.sdk"
elif ! xcode-select -p >/dev/null 2>&1; then
  fail "Apple's command line tools are missing. To install them: xcode-select --install"
fi
command -v cmake >/dev/null || fail "CMake is missing"

wrapper=
[ -z "${FMWRAPPER_SDK:-}" ] || wrapper=$(directory FMWRAPPER_SDK "$FMWRAPPER_SDK")
linux=${LINUX_PLUGIN:-}
[ -n "$linux" ] || [ ! -f "$build/plugin/Varnix.fmx" ] || linux=$build/plugin/Varnix.fmx

rm -rf "$build/bundle/Varnix.fmplugin"  # whatever an earlier one had in it
cmake -S "$project" -B "$build/bundle" -DVARNIX_BUILD_TOOLS=OFF -DVARNIX_BUILD_TESTS=OFF \
  ${toolchain:+--toolchain "$toolchain" "-DMACOS_SDK=$sdk"} "-DCMAKE_OSX_ARCHITECTURES=x86_64;arm64" \
  "-DFMWRAPPER_SDK=$wrapper" "-DVARNIX_LINUX_PLUGIN=$linux"
cmake --build "$build/bundle" -j "$(getconf _NPROCESSORS_ONLN)"
echo "$build/bundle/Varnix.fmplugin${linux:+, with the plug-in for Linux}"
