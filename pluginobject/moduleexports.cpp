// The two exports of the module.
#include <exception>

#include "platform/moduleresidence.h"
#include "pluginobject/shadingcorrectionplugin.h"

#ifdef _WIN32
#define FFC_EXPORT __declspec(dllexport)
#else
#define FFC_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

FFC_EXPORT IPlugin *CreatePluginObject()
{
  try {
    ffc::platform::KeepModuleResident();
    return new CShadingCorrectionPlugin;
  } catch (...) {
    return nullptr;
  }
}

FFC_EXPORT void DestoryPluginObject(IPlugin *pPlugin)
{
  delete pPlugin;
}

} // extern "C"
