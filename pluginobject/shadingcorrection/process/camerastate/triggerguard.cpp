#include "pluginobject/shadingcorrection/process/camerastate/triggerguard.h"

#include "pluginobject/statuscode.h"

int32_t CTriggerGuard::SwitchOff(const CFeatureAccess &features)
{
  return m_mode.Get() == "On" ? m_mode.Replace(features, "Off") : int32_t{PLUGIN_STATUS_SUCCESS};
}
