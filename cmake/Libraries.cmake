# Libraries that more than one folder needs.

# varnix_headers(TARGET HEADER [SUFFIX]): lets TARGET include the header-only library that holds HEADER, in the folder
# SUFFIX of an include directory if one is given. For another system than this one, whose own headers must stay out, only
# the folder of the library becomes visible.
function(varnix_headers target header)
  string(MAKE_C_IDENTIFIER "INCLUDE_${header}" variable)
  find_path(${variable} ${header} PATH_SUFFIXES ${ARGN} REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  set(directory ${${variable}})
  if(CMAKE_CROSSCOMPILING AND NOT ARGN)
    string(REGEX MATCH "^[^/]+" folder ${header})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
    file(CREATE_LINK ${directory}/${folder} ${CMAKE_BINARY_DIR}/headers/${folder} SYMBOLIC)
    set(directory ${CMAKE_BINARY_DIR}/headers)
  endif()
  target_include_directories(${target} SYSTEM PUBLIC ${directory})
endfunction()

# varnix_icu(TARGET): ICU's C interface. That of macOS has names without a version.
function(varnix_icu target)
  if(APPLE)
    target_link_libraries(${target} PRIVATE icucore)
    target_compile_definitions(${target} PRIVATE U_DISABLE_RENAMING=1)
  else()
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(ICU_UC REQUIRED IMPORTED_TARGET icu-uc)
    target_link_libraries(${target} PRIVATE PkgConfig::ICU_UC)
  endif()
endfunction()
