#!/bin/sh
# bundle.sh BUILD: builds the macOS product, BUILD/bundle/Varnix.fmplugin, for both processors. Environment variables, all
# optional:
#   FMWRAPPER_SDK  directory of the vendor's FMWrapper.framework; without it the bundle binds to what FileMaker has loaded
#   LINUX_PLUGIN   the Linux plug-in to include, named Varnix.fmx; by default BUILD/plugin/Varnix.fmx, if it exists
#   SERVICE        "yes" also builds BUILD/bundle/varnix-service, which needs the libraries in scripts/install-packages.sh
#   MACOS_SDK      directory of a macOS SDK; with it, LLVM's tools build the bundle on any system
set -eu
build=$1
project=$(dirname "$0")/..

fail() {
  echo "bundle: $1" >&2
  exit 1
}

# Checked here, because CMake's own message would come after a page of others.
directory() {
  (cd "$2" 2>/dev/null && pwd) || fail "$1: no such directory: $2"
}

toolchain=
if [ -n "${MACOS_SDK:-}" ]; then
  sdk=$(directory MACOS_SDK "$MACOS_SDK")
  toolchain=$project/cmake/Darwin.toolchain.cmake
  unset LIBRARY_PATH CPATH C_INCLUDE_PATH CPLUS_INCLUDE_PATH OBJC_INCLUDE_PATH  # for this system, not for macOS
elif [ "$(uname -s)" != Darwin ]; then
  fail "needs a Mac with CMake and Apple's command line tools, or elsewhere clang, lld, llvm and a macOS SDK:
  make bundle MACOS_SDK=path/to/MacOSX.sdk"
elif ! xcode-select -p >/dev/null 2>&1; then
  fail "Apple's command line tools are missing. Install them with: xcode-select --install"
fi
command -v cmake >/dev/null || fail "CMake is missing"

wrapper=
[ -z "${FMWRAPPER_SDK:-}" ] || wrapper=$(directory FMWRAPPER_SDK "$FMWRAPPER_SDK")
linux=${LINUX_PLUGIN:-}
[ -n "$linux" ] || [ ! -f "$build/plugin/Varnix.fmx" ] || linux=$build/plugin/Varnix.fmx

# What crash reports need, for packaging/release.sh. The linker leaves it in the object files.
export CXXFLAGS="${CXXFLAGS:-} -g" OBJCXXFLAGS="${OBJCXXFLAGS:-} -g"

bundle=$build/bundle/Varnix.fmplugin
service=OFF
[ "${SERVICE:-}" != yes ] || service=ON
rm -rf "$bundle" "$build/bundle/varnix-service"  # with the files of earlier builds
cmake -S "$project" -B "$build/bundle" -DVARNIX_BUILD_SERVICE=$service -DVARNIX_BUILD_SIMULATOR=OFF \
  -DVARNIX_BUILD_TESTS=OFF ${toolchain:+--toolchain "$toolchain" "-DMACOS_SDK=$sdk"} "-DCMAKE_OSX_ARCHITECTURES=x86_64;arm64" \
  "-DFMWRAPPER_SDK=$wrapper" "-DVARNIX_LINUX_PLUGIN=$linux"
cmake --build "$build/bundle" -j "$(getconf _NPROCESSORS_ONLN)"

# FileMaker refuses a bundle whose signature does not cover all of its files. The linker has signed only the binary.
if command -v codesign >/dev/null; then
  codesign --force --sign - "$bundle"
  codesign --verify --strict "$bundle"
  state="signed ad hoc"
else
  state="not signed, so FileMaker Pro will refuse it. On a Mac, sign it: codesign --force --sign - Varnix.fmplugin"
fi
echo "$bundle${linux:+, with the plug-in for Linux}: $state"
