# Libraries that more than one folder needs.

# Homebrew's folders for libraries of which macOS has its own version, so that pkg-config does not find them by itself.
if(CMAKE_HOST_APPLE AND NOT CMAKE_CROSSCOMPILING)
  find_program(BREW brew)
  if(BREW)
    execute_process(COMMAND ${BREW} --prefix icu4c OUTPUT_VARIABLE prefix OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    set(ENV{PKG_CONFIG_PATH} "${prefix}/lib/pkgconfig:$ENV{PKG_CONFIG_PATH}")
  endif()
endif()

# Header-only libraries that Homebrew lacks, or has in ever newer versions, from Debian's archive of sources: the path in its
# pool, and the SHA-256.
set(VARNIX_SOURCE_rapidxml r/rapidxml/rapidxml_1.13.orig.tar.gz
  36237604b5cd34424d8537ba9411f9f2cca842cdcb88c956c5bf39ce243bb44b)
set(VARNIX_SOURCE_dtl d/dtl/dtl_1.20.orig.tar.gz
  579f81bca88f4b9760a59d99c5a95bd8dd5dc2f20f33f1f9b5f64cb08979f54d)
set(VARNIX_SOURCE_httplib c/cpp-httplib/cpp-httplib_0.11.4+ds.orig.tar.xz
  8b1a5df569003b6a4f24c68489bbda5c64aec94697bdc9ebba5d79408b2ae7eb)

# Downloads the library that contains HEADER into the build folder, and sets VARIABLE to the folder to include. Does
# nothing for a library that is not in the list.
function(varnix_download_headers variable header)
  string(REGEX MATCH "^[a-z]+" name ${header})
  if(NOT DEFINED VARNIX_SOURCE_${name})
    return()
  endif()
  list(GET VARNIX_SOURCE_${name} 0 path)
  list(GET VARNIX_SOURCE_${name} 1 checksum)
  if(POLICY CMP0135)
    cmake_policy(SET CMP0135 NEW)  # the files' times are those of the download
  endif()
  include(FetchContent)
  FetchContent_Declare(${name} URL https://deb.debian.org/debian/pool/main/${path} URL_HASH SHA256=${checksum}
    SOURCE_SUBDIR nothing-to-build)
  FetchContent_MakeAvailable(${name})
  set(${variable} ${${name}_SOURCE_DIR} CACHE PATH "Folder of ${header}" FORCE)
endfunction()

# varnix_headers(TARGET HEADER [SUFFIX]): lets TARGET include the header-only library that contains HEADER, in the folder
# SUFFIX of an include directory if one is given. When cross-compiling, only the folder of the library becomes visible,
# not this system's other headers. On a Mac, downloads the libraries listed above.
function(varnix_headers target header)
  string(MAKE_C_IDENTIFIER "INCLUDE_${header}" variable)
  if(NOT ${variable} AND CMAKE_HOST_APPLE)
    varnix_download_headers(${variable} ${header})
  endif()
  find_path(${variable} ${header} PATH_SUFFIXES ${ARGN} NO_CMAKE_FIND_ROOT_PATH)
  if(NOT ${variable})
    message(FATAL_ERROR "${header} is missing; scripts/install-packages.sh installs what Varnix needs")
  endif()
  set(directory ${${variable}})
  if(CMAKE_CROSSCOMPILING AND NOT ARGN)
    string(REGEX MATCH "^[^/]+" folder ${header})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
    file(CREATE_LINK ${directory}/${folder} ${CMAKE_BINARY_DIR}/headers/${folder} SYMBOLIC)
    set(directory ${CMAKE_BINARY_DIR}/headers)
  endif()
  target_include_directories(${target} SYSTEM PUBLIC ${directory})
endfunction()

# varnix_icu(TARGET): ICU's C interface. That of macOS has names without a version, and by default its UTF-16 units are
# integers.
function(varnix_icu target)
  if(APPLE)
    target_link_libraries(${target} PRIVATE icucore)
    target_compile_definitions(${target} PRIVATE U_DISABLE_RENAMING=1 UCHAR_TYPE=char16_t)
  else()
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(ICU_UC REQUIRED IMPORTED_TARGET icu-uc)
    target_link_libraries(${target} PRIVATE PkgConfig::ICU_UC)
  endif()
endfunction()
