#include "platform/moduleresidence.h"

#include <dlfcn.h>

namespace ffc::platform {

void KeepModuleResident()
{
  Dl_info stInfo = {};
  // Not known only where nothing is loaded dynamically; then the name of none is the program's, which stays anyway.
  (void)dladdr(reinterpret_cast<const void *>(&KeepModuleResident), &stInfo);
  if (void *pHandle = dlopen(stInfo.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE)) {
    dlclose(pHandle);
  }
}

} // namespace ffc::platform
