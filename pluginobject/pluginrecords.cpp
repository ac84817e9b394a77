#include "pluginobject/pluginrecords.h"

#include <cstring>
#include <type_traits>

namespace ffc::pluginobject {

PLUGIN_MSG MakePluginMsg(EPluginMsgCode eCode)
{
  static_assert(std::is_trivially_copyable_v<PLUGIN_MSG>);
  PLUGIN_MSG stPluginMsg;
  std::memset(static_cast<void *>(&stPluginMsg), 0, sizeof stPluginMsg);
  stPluginMsg.nMsgCode = eCode;
  return stPluginMsg;
}

} // namespace ffc::pluginobject
