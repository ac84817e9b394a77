#include "pluginobject/shadingcorrection/process/camerastate/deviceparamguard.h"

#include <cmath>

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;

void CDeviceParamGuard::BeginAcquisition()
{
  *this = CDeviceParamGuard();
  m_userSets.BeginAcquisition();
}

int32_t CDeviceParamGuard::SaveOptional(const CFeatureAccess &features, const char *pName, std::string &strSaved)
{
  bool bImplemented = false;
  (void)features.IsFeatureImplemented(pName, bImplemented);
  return bImplemented ? features.GetEnumFeature(pName, strSaved) : PLUGIN_STATUS_SUCCESS;
}

int32_t CDeviceParamGuard::WriteOptional(const CFeatureAccess &features, const char *pName, const std::string &strSaved)
{
  bool bImplemented = false;
  const int32_t nStatus = features.IsFeatureImplemented(pName, bImplemented);
  return bImplemented ? features.SetEnumFeature(pName, strSaved) : nStatus;
}

int32_t CDeviceParamGuard::SaveUserParam(const CFeatureAccess &features)
{
  const int32_t nStatus =
    CSteps(features)
      .Then(&CUserSetGuard::SaveSelector, m_userSets, features)
      .Save(m_exposureTime)
      .Save(m_streaming)
      .Save(m_gain)
      .Save(m_blackLevel)
      .Save(m_digitalShift)
      .Then(SaveOptional, features, "FixedPatternNoiseCorrectMode", m_strFixedPatternNoiseCorrectMode)
      .Then(SaveOptional, features, "DeadPixelCorrect", m_strDeadPixelCorrect)
      .Then(SaveOptional, features, "RemoveParameterLimit", m_strRemoveParameterLimit)
      .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    m_streaming.SaveLate(features);
  }
  m_nTimeout = GetFrameTimeout(m_exposureTime.Get());
  return nStatus;
}

int32_t CDeviceParamGuard::Prepare(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  return CSteps(features)
    .Then(&CUserSetGuard::SwitchToDefault, m_userSets, features)
    .Get("BlackLevel", m_fDefaultBlackLevel)
    .Then(ReadFormat, features, stFormat)
    .Then(&CDeviceParamGuard::WriteUserParam, this, features)
    .Status();
}

int32_t CDeviceParamGuard::ReadFormat(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  return CSteps(features)
    .Then(ReadPayloadSize, features, stFormat)
    .Then(ReadPixelFormat, features, stFormat)
    .Then([&] {
      // On purpose with the width and height of the acquisition before: the geometry is read only now.
      stFormat.ApplyUnpackedSize();
    })
    .Then(ReadWidth, features, stFormat)
    .Then(ReadHeight, features, stFormat)
    .Status();
}

int32_t CDeviceParamGuard::WriteUserParam(const CFeatureAccess &features)
{
  return CSteps(features)
    .Then([&] {
      // A camera that does not tell whether it has limits is taken for one that has none to remove.
      bool bImplemented = false;
      (void)features.IsFeatureImplemented("RemoveParameterLimit", bImplemented);
      return bImplemented ? features.SetEnumFeature("RemoveParameterLimit", m_strRemoveParameterLimit)
                          : PLUGIN_STATUS_SUCCESS;
    })
    .Write(m_exposureTime)
    .Write(m_gain)
    .Write(m_blackLevel)
    .Write(m_digitalShift)
    .Then(WriteOptional, features, "FixedPatternNoiseCorrectMode", m_strFixedPatternNoiseCorrectMode)
    .Then(WriteOptional, features, "DeadPixelCorrect", m_strDeadPixelCorrect)
    .Status();
}

bool CDeviceParamGuard::IsBlackLevelDefault() const
{
  constexpr double TOLERANCE = 1e-6;
  return std::fabs(double{m_fDefaultBlackLevel} - double{m_blackLevel.Get()}) < TOLERANCE;
}

void CDeviceParamGuard::Restore(const CFeatureAccess &features)
{
  const bool bPendingBefore = IsRestorePending();
  m_userSets.Restore(features);
  if (IsRestorePending() && !bPendingBefore) {
    // Nobody has changed anything yet: this is what the acquisition leaves.
    m_exposureTime.ReadBack(features);
    m_gain.ReadBack(features);
    m_blackLevel.ReadBack(features);
    m_digitalShift.ReadBack(features);
  }
}

int32_t CDeviceParamGuard::ReviewPendingRestore(const CFeatureAccess &features)
{
  bool bUnchanged = true;
  const int32_t nStatus = CSteps(features)
                            .Then(&CDeviceParamGuard::CompareUserParam, this, features, bUnchanged)
                            .Save(m_streaming)
                            .Then(&CUserSetGuard::RefreshSelector, m_userSets, features)
                            .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED;
  }
  if (!bUnchanged) {
    m_userSets.DropPendingRestore();
  }
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CDeviceParamGuard::CompareUserParam(const CFeatureAccess &features, bool &bUnchanged) const
{
  const auto compare = [&](const auto &number) {
    bool bSame = true;
    const int32_t nStatus = number.Compare(features, bSame);
    bUnchanged = bUnchanged && bSame;
    return nStatus;
  };
  return CSteps(features)
    .Then(compare, m_exposureTime)
    .Then(compare, m_gain)
    .Then(compare, m_blackLevel)
    .Then(compare, m_digitalShift)
    .Status();
}

void CDeviceParamGuard::RestoreSelector(const CFeatureAccess &features)
{
  if (m_userSets.IsSelectorMoved() && m_userSets.RefreshSelector(features) == PLUGIN_STATUS_SUCCESS) {
    m_userSets.RestoreSelector(features);
  }
}

} // namespace ffc::process
