#include "pluginobject/shadingcorrection/process/camerastate/deviceparamguard.h"

#include <cmath>

#include "pluginobject/shadingcorrection/process/acquisition/waittimeout.h"
#include "pluginobject/shadingcorrection/process/featurechain.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

void CDeviceParamGuard::BeginAcquisition()
{
  *this = CDeviceParamGuard();
  m_userSets.BeginAcquisition();
}

int32_t CDeviceParamGuard::SaveOptional(const CFeatureAccess &features, const char *pName, std::string &strSaved)
{
  bool bImplemented = false;
  (void)features.IsFeatureImplemented(pName, bImplemented);
  return bImplemented ? features.GetEnumFeature(pName, strSaved) : int32_t{PLUGIN_STATUS_SUCCESS};
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
    CFeatureChain()
      .Then([&] { return m_userSets.SaveSelector(features); })
      .Then([&] { return m_exposureTime.Save(features); })
      .Then([&] { return m_streaming.Save(features); })
      .Then([&] { return m_gain.Save(features); })
      .Then([&] { return m_blackLevel.Save(features); })
      .Then([&] { return m_digitalShift.Save(features); })
      .Then([&] { return SaveOptional(features, "FixedPatternNoiseCorrectMode", m_strFixedPatternNoiseCorrectMode); })
      .Then([&] { return SaveOptional(features, "DeadPixelCorrect", m_strDeadPixelCorrect); })
      .Then([&] { return SaveOptional(features, "RemoveParameterLimit", m_strRemoveParameterLimit); })
      .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    m_streaming.SaveLate(features);
  }
  m_nTimeout = GetFrameTimeout(m_exposureTime.Get());
  return nStatus;
}

int32_t CDeviceParamGuard::Prepare(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  return CFeatureChain()
    .Then([&] { return m_userSets.SwitchToDefault(features); })
    .Then([&] { return features.GetFloatFeature("BlackLevel", m_fDefaultBlackLevel); })
    .Then([&] { return ReadFormat(features, stFormat); })
    .Then([&] { return WriteUserParam(features); })
    .Status();
}

int32_t CDeviceParamGuard::ReadFormat(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  return CFeatureChain()
    .Then([&] { return ReadPayloadSize(features, stFormat); })
    .Then([&] { return ReadPixelFormat(features, stFormat); })
    .Then([&]() -> int32_t {
      // On purpose with the width and height of the acquisition before: the geometry is read only now.
      stFormat.ApplyUnpackedSize();
      return PLUGIN_STATUS_SUCCESS;
    })
    .Then([&] { return ReadWidth(features, stFormat); })
    .Then([&] { return ReadHeight(features, stFormat); })
    .Status();
}

int32_t CDeviceParamGuard::WriteUserParam(const CFeatureAccess &features)
{
  return CFeatureChain()
    .Then([&]() -> int32_t {
      // A camera that does not tell whether it has limits is taken for one that has none to remove.
      bool bImplemented = false;
      (void)features.IsFeatureImplemented("RemoveParameterLimit", bImplemented);
      return bImplemented ? features.SetEnumFeature("RemoveParameterLimit", m_strRemoveParameterLimit)
                          : int32_t{PLUGIN_STATUS_SUCCESS};
    })
    .Then([&] { return m_exposureTime.Write(features); })
    .Then([&] { return m_gain.Write(features); })
    .Then([&] { return m_blackLevel.Write(features); })
    .Then([&] { return m_digitalShift.Write(features); })
    .Then([&] { return WriteOptional(features, "FixedPatternNoiseCorrectMode", m_strFixedPatternNoiseCorrectMode); })
    .Then([&] { return WriteOptional(features, "DeadPixelCorrect", m_strDeadPixelCorrect); })
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
  const int32_t nStatus = CFeatureChain()
                            .Then([&] { return CompareUserParam(features, bUnchanged); })
                            .Then([&] { return m_streaming.Save(features); })
                            .Then([&] { return m_userSets.RefreshSelector(features); })
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
  return CFeatureChain()
    .Then([&] { return compare(m_exposureTime); })
    .Then([&] { return compare(m_gain); })
    .Then([&] { return compare(m_blackLevel); })
    .Then([&] { return compare(m_digitalShift); })
    .Status();
}

void CDeviceParamGuard::RestoreSelector(const CFeatureAccess &features)
{
  if (m_userSets.IsSelectorMoved() && m_userSets.RefreshSelector(features) == PLUGIN_STATUS_SUCCESS) {
    m_userSets.RestoreSelector(features);
  }
}

} // namespace ffc::process
