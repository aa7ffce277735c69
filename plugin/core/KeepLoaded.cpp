#include "core/KeepLoaded.h"

#include <dlfcn.h>

void KeepLoaded(const void* address) {
  Dl_info home;
  if (dladdr(address, &home) == 0) return;
  dlopen(home.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}

void KeepPluginLoaded() { KeepLoaded(reinterpret_cast<const void*>(&KeepPluginLoaded)); }
