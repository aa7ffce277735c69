# varnix_identify(PROGRAM IDENTIFIER): gives a program for macOS an identifier, under which macOS stores its settings, and,
# like FileMaker Pro, the permission for HTTP without encryption. Does nothing for other systems.
function(varnix_identify PROGRAM IDENTIFIER)
  if(NOT APPLE)
    return()
  endif()
  set(plist ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.plist)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/Program.plist.in ${plist} @ONLY)
  target_link_options(${PROGRAM} PRIVATE "LINKER:-sectcreate,__TEXT,__info_plist,${plist}")
  set_property(TARGET ${PROGRAM} APPEND PROPERTY LINK_DEPENDS ${plist})
endfunction()
