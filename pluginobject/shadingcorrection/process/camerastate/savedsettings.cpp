#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"

#include <algorithm>
#include <cmath>

#include "pluginobject/shadingcorrection/process/steps.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;

namespace {

int32_t Read(const CFeatureAccess &features, const char *pName, float &fValue)
{
  return features.GetFloatFeature(pName, fValue);
}

int32_t Read(const CFeatureAccess &features, const char *pName, int64_t &nValue)
{
  return features.GetIntFeature(pName, nValue);
}

int32_t WriteBack(const CFeatureAccess &features, const char *pName, float fValue)
{
  return features.RestoreFloatFeature(pName, fValue);
}

int32_t WriteBack(const CFeatureAccess &features, const char *pName, int64_t nValue)
{
  return features.SetIntFeature(pName, nValue);
}

// A camera may keep a number with other last bits than a float has.
bool IsSame(float fFirst, float fSecond)
{
  constexpr float TOLERANCE = 1e-6F;
  return std::fabs(fFirst - fSecond) <= TOLERANCE * std::max(std::fabs(fFirst), std::fabs(fSecond));
}

bool IsSame(int64_t nFirst, int64_t nSecond)
{
  return nFirst == nSecond;
}

} // namespace

void CSavedEntry::Forget()
{
  m_strSaved.clear();
  m_bToRestore = false;
}

int32_t CSavedEntry::Save(const CFeatureAccess &features)
{
  const int32_t nStatus = features.GetEnumFeature(m_pName, m_strSaved);
  m_bToRestore = m_bToRestore || nStatus == PLUGIN_STATUS_SUCCESS;
  return nStatus;
}

int32_t CSavedEntry::Replace(const CFeatureAccess &features, const char *pEntry)
{
  const int32_t nStatus = features.SetEnumFeature(m_pName, pEntry);
  m_bToRestore = m_bToRestore || nStatus == PLUGIN_STATUS_SUCCESS;
  return nStatus;
}

void CSavedEntry::Restore(const CFeatureAccess &features)
{
  if (!m_bToRestore || m_strSaved.empty()) {
    return;
  }
  m_bToRestore = false;
  (void)TryTwice([&] { return CSteps(features).Set(m_pName, m_strSaved).Status(); });
}

int32_t SwitchTriggerOff(const CFeatureAccess &features, CSavedEntry &triggerMode)
{
  return triggerMode.Get() == "On" ? triggerMode.Replace(features, "Off") : PLUGIN_STATUS_SUCCESS;
}

void CStreamingState::SaveLate(const CFeatureAccess &features)
{
  if (!WasStreaming()) {
    (void)Save(features);
  }
}

template <class TNumber>
int32_t CSavedNumber<TNumber>::Save(const CFeatureAccess &features)
{
  return Read(features, m_pName, m_saved);
}

template <class TNumber>
int32_t CSavedNumber<TNumber>::Write(const CFeatureAccess &features)
{
  const int32_t nStatus = WriteBack(features, m_pName, m_saved);
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    m_written = m_saved;
  }
  return nStatus;
}

template <class TNumber>
void CSavedNumber<TNumber>::ReadBack(const CFeatureAccess &features)
{
  TNumber value = 0;
  if (Read(features, m_pName, value) == PLUGIN_STATUS_SUCCESS) {
    m_written = value;
  }
}

template <class TNumber>
int32_t CSavedNumber<TNumber>::Compare(const CFeatureAccess &features, bool &bUnchanged) const
{
  bUnchanged = true;
  if (!m_written.has_value()) {
    return PLUGIN_STATUS_SUCCESS;
  }
  TNumber value = 0;
  const int32_t nStatus = Read(features, m_pName, value);
  bUnchanged = nStatus != PLUGIN_STATUS_SUCCESS || IsSame(value, *m_written);
  return nStatus;
}

template class CSavedNumber<float>;
template class CSavedNumber<int64_t>;

} // namespace ffc::process
