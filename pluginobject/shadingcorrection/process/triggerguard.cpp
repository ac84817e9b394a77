#include "pluginobject/shadingcorrection/process/triggerguard.h"

#include "pluginobject/statuscode.h"

int32_t CTriggerGuard::Save(const CFeatureAccess &features)
{
  return features.GetEnumFeature("TriggerMode", m_strTriggerMode);
}

int32_t CTriggerGuard::SwitchOff(const CFeatureAccess &features) const
{
  return m_strTriggerMode == "On" ? features.SetEnumFeature("TriggerMode", "Off") : int32_t{PLUGIN_STATUS_SUCCESS};
}

void CTriggerGuard::Restore(const CFeatureAccess &features) const
{
  if (!m_strTriggerMode.empty()) {
    (void)features.SetEnumFeature("TriggerMode", m_strTriggerMode);
  }
}
