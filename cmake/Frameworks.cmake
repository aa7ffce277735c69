# varnix_link_frameworks(TARGET): the frameworks of macOS that the plug-in's units use.
function(varnix_link_frameworks target)
  foreach(framework AppKit ApplicationServices CoreFoundation Foundation)
    target_link_libraries(${target} PUBLIC "-framework ${framework}")
  endforeach()
  target_link_libraries(${target} PUBLIC objc)

  # The pasteboard functions are in HIServices, which ApplicationServices re-exports. Some copies of the SDK for other systems
  # have lost all re-exports.
  set(umbrella ${CMAKE_OSX_SYSROOT}/System/Library/Frameworks/ApplicationServices.framework)
  if(CMAKE_CROSSCOMPILING AND EXISTS ${umbrella}/Frameworks/HIServices.framework)
    file(STRINGS ${umbrella}/ApplicationServices.tbd reexports REGEX "^reexported-libraries" LIMIT_COUNT 1)
    if(NOT reexports)
      target_link_libraries(${target} PUBLIC "-F${umbrella}/Frameworks" "-framework HIServices")
    endif()
  endif()
endfunction()
