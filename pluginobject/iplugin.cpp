#include "pluginobject/iplugin.h"

#include "pluginobject/statuscode.h"

int32_t IPluginExtended::GetProperty(uint32_t /*nKey*/, const QVariant * /*pInput*/, QVariant * /*pValue*/)
{
  return PLUGIN_STATUS_NOT_SUPPORTED;
}
