#include "pluginobject/shadingcorrection/process/hoststreamguard.h"

#include "pluginobject/shadingcorrection/process/featurechain.h"

void CHostStreamGuard::SaveStreamMode(const CFeatureAccess &streamFeatures)
{
  (void)streamFeatures.GetEnumFeature("StreamBufferHandlingMode", m_strStreamBufferHandlingMode);
  m_bStreamMode = !m_strStreamBufferHandlingMode.empty();
}

int32_t CHostStreamGuard::Prepare(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures) const
{
  return CFeatureChain()
    .Then([&] { return m_trigger.SwitchOff(deviceFeatures); })
    .Then([&]() -> int32_t {
      return m_bStreamMode && m_strStreamBufferHandlingMode != "NewestOnly"
               ? streamFeatures.SetEnumFeature("StreamBufferHandlingMode", "NewestOnly")
               : PLUGIN_STATUS_SUCCESS;
    })
    .Status();
}

void CHostStreamGuard::Restore(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures) const
{
  m_trigger.Restore(deviceFeatures);
  if (m_bStreamMode) {
    (void)streamFeatures.SetEnumFeature("StreamBufferHandlingMode", m_strStreamBufferHandlingMode);
  }
}
