# Builds the plug-in module as a macOS bundle, Varnix.fmplugin.

set(VARNIX_LINUX_PLUGIN "" CACHE FILEPATH "Varnix.fmx for FileMaker Server on Linux, to include in the bundle; empty: none")

set_target_properties(plugin PROPERTIES BUNDLE ON BUNDLE_EXTENSION fmplugin
  MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/packaging/Info.plist.in
  LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.txt)
target_link_options(plugin PRIVATE "LINKER:-exported_symbols_list,${PROJECT_SOURCE_DIR}/cmake/exports.txt")

# Jobs on the system's queues may still run while the process exits, so nothing static is destroyed then.
target_compile_options(varnix PRIVATE -fno-c++-static-destructors)
target_compile_options(plugin PRIVATE -fno-c++-static-destructors)

if(FMWRAPPER_SDK)
  if(NOT IS_DIRECTORY "${FMWRAPPER_SDK}/FMWrapper.framework")
    message(FATAL_ERROR "FMWRAPPER_SDK: no FMWrapper.framework in ${FMWRAPPER_SDK}")
  endif()
  target_link_options(plugin PRIVATE "-F${FMWRAPPER_SDK}")
  target_link_libraries(plugin PRIVATE "-framework FMWrapper")
else()
  target_link_options(plugin PRIVATE "LINKER:-undefined,dynamic_lookup")
endif()

if(VARNIX_LINUX_PLUGIN)
  cmake_path(GET VARNIX_LINUX_PLUGIN FILENAME name)
  if(NOT name STREQUAL "Varnix.fmx" OR NOT EXISTS "${VARNIX_LINUX_PLUGIN}")
    message(FATAL_ERROR "VARNIX_LINUX_PLUGIN: ${VARNIX_LINUX_PLUGIN} does not exist or is not named Varnix.fmx")
  endif()
  file(READ "${VARNIX_LINUX_PLUGIN}" magic LIMIT 4 HEX)
  if(NOT magic STREQUAL "7f454c46")  # ELF
    message(FATAL_ERROR "VARNIX_LINUX_PLUGIN: ${VARNIX_LINUX_PLUGIN} is not a Linux library")
  endif()
  target_sources(plugin PRIVATE "${VARNIX_LINUX_PLUGIN}")
  set_source_files_properties("${VARNIX_LINUX_PLUGIN}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources/Linux)
endif()
