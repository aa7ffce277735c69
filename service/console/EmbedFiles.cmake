# varnix_embed(TARGET FOLDER): adds the files in FOLDER to TARGET as the array that console/WebFiles.h declares. Run as a
# script, "cmake -P EmbedFiles.cmake OUTPUT FOLDER NAME...", it writes that array.

if(NOT CMAKE_SCRIPT_MODE_FILE)
  function(varnix_embed target folder)
    get_filename_component(folder ${folder} ABSOLUTE)
    file(GLOB_RECURSE names CONFIGURE_DEPENDS RELATIVE ${folder}
      ${folder}/*.html ${folder}/*.js ${folder}/*.css ${folder}/*.svg)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/WebFiles.cpp)
    list(TRANSFORM names PREPEND ${folder}/ OUTPUT_VARIABLE paths)
    set(script ${CMAKE_CURRENT_FUNCTION_LIST_FILE})
    add_custom_command(OUTPUT ${output} COMMAND ${CMAKE_COMMAND} -P ${script} ${output} ${folder} ${names}
      DEPENDS ${paths} ${script} COMMENT "Embedding the console's page" VERBATIM)
    target_sources(${target} PRIVATE ${output})
  endfunction()
  return()
endif()

set(output ${CMAKE_ARGV3})
set(folder ${CMAKE_ARGV4})
set(arrays "")
set(entries "")
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(i RANGE 5 ${last})
  set(name ${CMAKE_ARGV${i}})
  file(READ ${folder}/${name} bytes HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  # A last byte more, because an array cannot be empty.
  string(APPEND arrays "constexpr unsigned char kFile${i}[] = {${bytes}0};\n")
  string(APPEND entries "      {\"${name}\", {reinterpret_cast<const char*>(kFile${i}), sizeof kFile${i} - 1}},\n")
endforeach()
file(WRITE ${output} "// Made by EmbedFiles.cmake.
#include \"console/WebFiles.h\"

namespace service {
namespace {

${arrays}
}  // namespace

std::span<const WebFile> WebFiles() {
  static const WebFile files[] = {
${entries}  };
  return files;
}

}  // namespace service
")
