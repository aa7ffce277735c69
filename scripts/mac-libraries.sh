#!/bin/sh
# mac-libraries.sh SDK FOLDER: fills FOLDER like Homebrew's folder on a Mac, as far as the simulator and the tests need
# it, so that another system can compile and link them for both processors. SDK is the directory of a macOS SDK. The
# headers come from Debian's packages and are the same for every system. GoogleTest and pugixml are built. The other
# libraries are stubs with the functions of Debian's copies, which can be linked but not run.
set -eu
sdk=$1
mkdir -p "$2"
folder=$(cd "$2" && pwd)
icu=$folder/opt/icu4c  # out of the way, because macOS has its own
sources=$folder/source
clang=${CLANG:-clang++}

fail() {
  echo "mac-libraries: $1" >&2
  exit 1
}

# unpack PATH SHA256: unpacks an archive of Debian's pool into the folder of sources.
unpack() {
  archive=$sources/$(basename "$1")
  [ -f "$archive" ] || curl -sfL -o "$archive" "https://deb.debian.org/debian/pool/main/$1" || fail "cannot download $1"
  echo "$2  $archive" | sha256sum --check --quiet || fail "$archive is damaged: remove it and start again"
  tar -xf "$archive" -C "$sources" --strip-components 1
}

# build NAME SOURCE [OPTION...]: lib/libNAME.a of one source, for both processors.
build() {
  name=$1
  file=$2
  shift 2
  "$clang" -target x86_64-apple-macos11 -arch x86_64 -arch arm64 -isysroot "$sdk" -B"$folder/tools" \
    -stdlib++-isystem "$sdk/usr/include/c++/v1" -std=c++20 -O1 "$@" -c "$file" -o "$sources/$name.o"
  "$("$clang" -print-prog-name=llvm-libtool-darwin)" -static -o "$folder/lib/lib$name.a" "$sources/$name.o"
}

# stub PREFIX NAME: makes a library with the functions of this system's libNAME.so.
stub() {
  targets="targets: [ x86_64-macos, arm64-macos ]"
  {
    printf -- "--- !tapi-tbd\ntbd-version: 4\n%s\ninstall-name: '%s'\n" "$targets" "$1/lib/lib$2.dylib"
    printf "exports:\n  - %s\n    symbols: [\n" "$targets"
    nm -D --defined-only "$("$clang" -print-file-name="lib$2.so")" | sed "s/.* /'_/; s/@.*//; s/\$/',/" | LC_ALL=C sort -u
    printf "    ]\n...\n"
  } > "$1/lib/lib$2.tbd"
}

# describe PREFIX NAME FLAG...: writes the file with which pkg-config finds a library.
describe() {
  prefix=$1
  name=$2
  shift 2
  printf "Name: %s\nDescription: for macOS\nVersion: %s\nCflags: -I%s\nLibs: -L%s %s\n" "$name" \
    "$(pkg-config --modversion "$name")" "$prefix/include" "$prefix/lib" "$*" > "$prefix/lib/pkgconfig/$name.pc"
}

mkdir -p "$folder/include" "$folder/lib/pkgconfig" "$folder/lib/cmake/pugixml" "$sources" "$folder/tools" "$icu/include" \
  "$icu/lib/pkgconfig"
ln -sf "$("$clang" -print-prog-name=llvm-lipo)" "$folder/tools/lipo"
for header in gtest nlohmann gmpxx.h mpfr.h; do
  ln -sfn "/usr/include/$header" "$folder/include/$header"
done
ln -sf "$(echo '#include <gmp.h>' | "$clang" -x c++ -M - | grep -o '/[^ ]*/gmp\.h')" "$folder/include"
ln -sfn /usr/include/unicode "$icu/include/unicode"
cp -r /usr/share/cmake/nlohmann_json "$folder/lib/cmake"  # finds its headers from its own place

build gtest /usr/src/googletest/googletest/src/gtest-all.cc -I/usr/src/googletest/googletest "-I$folder/include"
build gtest_main /usr/src/googletest/googletest/src/gtest_main.cc "-I$folder/include"

unpack p/pugixml/pugixml_1.13.orig.tar.gz 5c5ad5d7caeb791420408042a7d88c2c6180781bf218feca259fd9d840a888e1
build pugixml "$sources/src/pugixml.cpp"
cp "$sources"/src/*.hpp "$folder/include"
cat > "$folder/lib/cmake/pugixml/pugixml-config.cmake" <<CMAKE
add_library(pugixml::pugixml STATIC IMPORTED)
set_target_properties(pugixml::pugixml PROPERTIES IMPORTED_LOCATION "$folder/lib/libpugixml.a"
  INTERFACE_INCLUDE_DIRECTORIES "$folder/include")
CMAKE

unpack c/cpp-httplib/cpp-httplib_0.11.4+ds.orig.tar.xz 8b1a5df569003b6a4f24c68489bbda5c64aec94697bdc9ebba5d79408b2ae7eb
cp "$sources/httplib.h" "$folder/include"  # Debian's package has it in two parts
for library in gmp gmpxx mpfr; do
  stub "$folder" $library
  describe "$folder" $library -l$library
done
for library in icuuc icui18n; do stub "$icu" $library; done
describe "$icu" icu-uc -licuuc
describe "$icu" icu-i18n -licui18n -licuuc
touch "$folder/complete"
