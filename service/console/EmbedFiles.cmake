# varnix_embed(TARGET FUNCTION FOLDER PATTERN...): adds the files in FOLDER whose names fit a pattern to TARGET, as the
# array that FUNCTION of console/EmbeddedFiles.h returns. Run as a script, "cmake -P EmbedFiles.cmake OUTPUT FUNCTION FOLDER
# NAME...", it writes that function.

if(NOT CMAKE_SCRIPT_MODE_FILE)
  function(varnix_embed target function folder)
    get_filename_component(folder ${folder} ABSOLUTE)
    list(TRANSFORM ARGN PREPEND ${folder}/ OUTPUT_VARIABLE patterns)
    file(GLOB_RECURSE names CONFIGURE_DEPENDS RELATIVE ${folder} ${patterns})
    set(output ${CMAKE_CURRENT_BINARY_DIR}/${function}.cpp)
    list(TRANSFORM names PREPEND ${folder}/ OUTPUT_VARIABLE paths)
    set(script ${CMAKE_CURRENT_FUNCTION_LIST_FILE})
    add_custom_command(OUTPUT ${output} COMMAND ${CMAKE_COMMAND} -P ${script} ${output} ${function} ${folder} ${names}
      DEPENDS ${paths} ${script} COMMENT "Embedding ${function}" VERBATIM)
    target_sources(${target} PRIVATE ${output})
  endfunction()
  return()
endif()

set(output ${CMAKE_ARGV3})
set(function ${CMAKE_ARGV4})
set(folder ${CMAKE_ARGV5})
set(arrays "")
set(entries "")
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(i RANGE 6 ${last})
  set(name ${CMAKE_ARGV${i}})
  file(READ ${folder}/${name} bytes HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  # A last byte more, because an array cannot be empty.
  string(APPEND arrays "constexpr unsigned char k${function}${i}[] = {${bytes}0};\n")
  string(APPEND entries "      {\"${name}\", {reinterpret_cast<const char*>(k${function}${i}), sizeof k${function}${i} - 1}},\n")
endforeach()
file(WRITE ${output} "// Made by EmbedFiles.cmake.
#include \"console/EmbeddedFiles.h\"

namespace service {
namespace {

${arrays}
}  // namespace

std::span<const EmbeddedFile> ${function}() {
  static const EmbeddedFile files[] = {
${entries}  };
  return files;
}

}  // namespace service
")
