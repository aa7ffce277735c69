# Compiler and linker options that make memory errors harder to exploit.

if(NOT VARNIX_SANITIZE)  # sanitizers check more, and fortified functions interfere with them
  add_compile_options(-fstack-protector-strong)
  # Fortified functions need optimisation; distributions that define the macro themselves would be warned about.
  add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  if(NOT APPLE)
    add_link_options("LINKER:-z,relro" "LINKER:-z,now")
  endif()
endif()
