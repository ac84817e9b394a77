#include "pluginobject/shadingcorrection/process/hoststreamguard.h"

#include "pluginobject/shadingcorrection/process/featurechain.h"

int32_t CHostStreamGuard::SaveStreaming(const CFeatureAccess &deviceFeatures)
{
  return deviceFeatures.GetIntFeature("TLParamsLocked", m_nTLParamsLocked);
}

int32_t CHostStreamGuard::SaveTriggerMode(const CFeatureAccess &deviceFeatures)
{
  return deviceFeatures.GetEnumFeature("TriggerMode", m_strTriggerMode);
}

void CHostStreamGuard::SaveStreamMode(const CFeatureAccess &streamFeatures)
{
  (void)streamFeatures.GetEnumFeature("StreamBufferHandlingMode", m_strStreamBufferHandlingMode);
  m_bStreamMode = !m_strStreamBufferHandlingMode.empty();
}

int32_t CHostStreamGuard::Prepare(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures) const
{
  return CFeatureChain()
    .Then([&]() -> int32_t {
      return m_strTriggerMode == "On" ? deviceFeatures.SetEnumFeature("TriggerMode", "Off") : PLUGIN_STATUS_SUCCESS;
    })
    .Then([&]() -> int32_t {
      return m_bStreamMode && m_strStreamBufferHandlingMode != "NewestOnly"
               ? streamFeatures.SetEnumFeature("StreamBufferHandlingMode", "NewestOnly")
               : PLUGIN_STATUS_SUCCESS;
    })
    .Status();
}

void CHostStreamGuard::Restore(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures) const
{
  // An empty string was never read, so there is nothing to put back.
  if (!m_strTriggerMode.empty()) {
    (void)deviceFeatures.SetEnumFeature("TriggerMode", m_strTriggerMode);
  }
  if (m_bStreamMode) {
    (void)streamFeatures.SetEnumFeature("StreamBufferHandlingMode", m_strStreamBufferHandlingMode);
  }
}
