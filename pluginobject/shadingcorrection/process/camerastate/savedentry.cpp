#include "pluginobject/shadingcorrection/process/camerastate/savedentry.h"

#include "pluginobject/shadingcorrection/process/featurechain.h"

void CSavedEntry::Forget()
{
  if (!m_bOwed) {
    m_strSaved.clear();
    m_bReplaced = false;
  }
}

int32_t CSavedEntry::PutBack(const CFeatureAccess &features)
{
  const int32_t nStatus = CFeatureChain().Then([&] { return features.SetEnumFeature(m_pName, m_strSaved); }).Status();
  m_bReplaced = m_bReplaced && nStatus != PLUGIN_STATUS_SUCCESS;
  m_bOwed = m_bReplaced;
  return nStatus;
}

int32_t CSavedEntry::Save(const CFeatureAccess &features)
{
  const int32_t nStatus = m_bOwed ? PutBack(features) : int32_t{PLUGIN_STATUS_SUCCESS};
  return nStatus == PLUGIN_STATUS_SUCCESS ? features.GetEnumFeature(m_pName, m_strSaved) : nStatus;
}

int32_t CSavedEntry::Replace(const CFeatureAccess &features, const char *pEntry)
{
  m_bReplaced = true;
  return features.SetEnumFeature(m_pName, pEntry);
}

void CSavedEntry::Restore(const CFeatureAccess &features)
{
  if (!m_strSaved.empty() && PutBack(features) != PLUGIN_STATUS_SUCCESS) {
    (void)PutBack(features);
  }
}
