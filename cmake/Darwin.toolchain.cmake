# Builds for macOS on another system, with clang, lld and LLVM's tools, against the macOS SDK (MacOSX.sdk of Apple's
# developer tools) in the directory MACOS_SDK. scripts/bundle.sh uses it. The simulator and the tests also need the
# libraries that Homebrew has on a Mac, in the directory MACOS_LIBRARIES (scripts/mac-libraries.sh).

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 20)  # macOS 11

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MACOS_SDK MACOS_LIBRARIES)
if(NOT IS_DIRECTORY "${MACOS_SDK}/System/Library/Frameworks")
  message(FATAL_ERROR "MACOS_SDK must name the directory of a macOS SDK, but is \"${MACOS_SDK}\"")
endif()
set(CMAKE_OSX_SYSROOT ${MACOS_SDK})
set(CMAKE_FIND_ROOT_PATH ${MACOS_SDK} ${MACOS_LIBRARIES})
if(MACOS_LIBRARIES)
  list(APPEND CMAKE_PREFIX_PATH ${MACOS_LIBRARIES})
  set(ENV{PKG_CONFIG_LIBDIR} ${MACOS_LIBRARIES}/lib/pkgconfig:${MACOS_LIBRARIES}/opt/icu4c/lib/pkgconfig)
endif()
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()

find_program(DARWIN_CLANG NAMES clang++ clang++-19 clang++-18 clang++-17 clang++-16 clang++-15 clang++-14 REQUIRED)
set(CMAKE_CXX_COMPILER ${DARWIN_CLANG})
set(CMAKE_OBJCXX_COMPILER ${DARWIN_CLANG})
set(CMAKE_CXX_COMPILER_TARGET x86_64-apple-macos)  # -arch overrides the processor
set(CMAKE_OBJCXX_COMPILER_TARGET ${CMAKE_CXX_COMPILER_TARGET})

# Sets `variable` to the path of the tool `name` that belongs to this clang.
function(find_llvm_tool variable name)
  execute_process(COMMAND ${DARWIN_CLANG} -print-prog-name=${name} OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT IS_ABSOLUTE "${path}")
    message(FATAL_ERROR "${name} is missing (Debian: packages lld and llvm)")
  endif()
  set(${variable} ${path} PARENT_SCOPE)
endfunction()
find_llvm_tool(CMAKE_LINKER ld64.lld)
find_llvm_tool(CMAKE_AR llvm-ar)
find_llvm_tool(CMAKE_RANLIB llvm-ranlib)
find_llvm_tool(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool)
find_llvm_tool(libtool llvm-libtool-darwin)
find_llvm_tool(lipo llvm-lipo)

# Clang looks for its tools in the directory of -B, under these names.
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/darwin)
file(CREATE_LINK ${CMAKE_LINKER} ${CMAKE_BINARY_DIR}/darwin/ld64.lld SYMBOLIC)
file(CREATE_LINK ${lipo} ${CMAKE_BINARY_DIR}/darwin/lipo SYMBOLIC)
foreach(language CXX OBJCXX)
  # The SDK's C++ library, not the one that may be installed with clang.
  set(CMAKE_${language}_FLAGS_INIT
    "-B${CMAKE_BINARY_DIR}/darwin -stdlib++-isystem ${CMAKE_OSX_SYSROOT}/usr/include/c++/v1")
  # llvm-ar cannot archive objects with two architectures.
  set(CMAKE_${language}_CREATE_STATIC_LIBRARY "${libtool} -static -o <TARGET> <OBJECTS>")
endforeach()
foreach(kind EXE MODULE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-fuse-ld=lld -stdlib=libc++")
endforeach()
