#include "platform/moduleresidence.h"

#include <dlfcn.h>

namespace ffc::platform {

void KeepModuleResident()
{
  Dl_info stInfo = {};
  if (dladdr(reinterpret_cast<const void *>(&KeepModuleResident), &stInfo) == 0 || stInfo.dli_fname == nullptr) {
    return;
  }
  if (void *pHandle = dlopen(stInfo.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE)) {
    dlclose(pHandle);
  }
}

} // namespace ffc::platform
