#include "pluginobject/shadingcorrection/process/camerastate/hoststreamguard.h"

#include "pluginobject/shadingcorrection/process/steps.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;

void CHostStreamGuard::Reset()
{
  m_streaming = CStreamingState();
  m_triggerMode.Forget();
  m_streamMode.Forget();
}

void CHostStreamGuard::SaveStreamMode(const CFeatureAccess &streamFeatures)
{
  (void)m_streamMode.Save(streamFeatures);
}

int32_t CHostStreamGuard::Prepare(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures)
{
  return CSteps(deviceFeatures)
    .Then(SwitchTriggerOff, deviceFeatures, m_triggerMode)
    .Then([&] {
      return !m_streamMode.Get().empty() && m_streamMode.Get() != "NewestOnly"
               ? m_streamMode.Replace(streamFeatures, "NewestOnly")
               : PLUGIN_STATUS_SUCCESS;
    })
    .Status();
}

void CHostStreamGuard::Restore(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures)
{
  m_triggerMode.Restore(deviceFeatures);
  m_streamMode.Restore(streamFeatures);
}

} // namespace ffc::process
