# make install: the programs, and in a separate folder the libraries that fmsim loads.

if(VARNIX_BUILD_SERVICE)
  install(TARGETS service RUNTIME)
endif()
if(VARNIX_BUILD_SIMULATOR)
  set_target_properties(fmsim PROPERTIES INSTALL_RPATH "$<IF:$<BOOL:${APPLE}>,@loader_path,$ORIGIN>/../lib/varnix")
  install(TARGETS fmsim RUNTIME)
  install(TARGETS simwrapper plugin LIBRARY DESTINATION lib/varnix)
endif()
