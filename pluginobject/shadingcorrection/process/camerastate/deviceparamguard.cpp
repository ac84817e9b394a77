#include "pluginobject/shadingcorrection/process/camerastate/deviceparamguard.h"

#include <cmath>

#include "pluginobject/shadingcorrection/process/acquisition/waittimeout.h"
#include "pluginobject/shadingcorrection/process/camerastate/userset.h"
#include "pluginobject/shadingcorrection/process/featurechain.h"

void CDeviceParamGuard::BeginAcquisition()
{
  *this = CDeviceParamGuard();
  m_bUserSetPending = true;
}

int32_t CDeviceParamGuard::__SaveOptional(const CFeatureAccess &features, const char *pName, std::string &strSaved)
{
  bool bImplemented = false;
  (void)features.IsFeatureImplemented(pName, bImplemented);
  return bImplemented ? features.GetEnumFeature(pName, strSaved) : int32_t{PLUGIN_STATUS_SUCCESS};
}

int32_t CDeviceParamGuard::__WriteOptional(const CFeatureAccess &features, const char *pName,
                                           const std::string &strSaved)
{
  bool bImplemented = false;
  const int32_t nStatus = features.IsFeatureImplemented(pName, bImplemented);
  return bImplemented ? features.SetEnumFeature(pName, strSaved) : nStatus;
}

int32_t CDeviceParamGuard::SaveUserParam(const CFeatureAccess &features)
{
  const int32_t nStatus =
    CFeatureChain()
      .Then([&] { return features.GetEnumFeature("UserSetSelector", m_strUserSetSelector); })
      .Then([&] { return features.GetFloatFeature("ExposureTime", m_fExposureTime); })
      .Then([&] { return m_streaming.Save(features); })
      .Then([&] { return features.GetFloatFeature("Gain", m_fGain); })
      .Then([&] { return features.GetFloatFeature("BlackLevel", m_fBlackLevel); })
      .Then([&] { return features.GetIntFeature("DigitalShift", m_nDigitalShift); })
      .Then([&] { return __SaveOptional(features, "FixedPatternNoiseCorrectMode", m_strFixedPatternNoiseCorrectMode); })
      .Then([&] { return __SaveOptional(features, "DeadPixelCorrect", m_strDeadPixelCorrect); })
      .Then([&] { return __SaveOptional(features, "RemoveParameterLimit", m_strRemoveParameterLimit); })
      .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    m_streaming.SaveLate(features);
  }
  m_nTimeout = GetFrameTimeout(m_fExposureTime);
  return nStatus;
}

int32_t CDeviceParamGuard::Prepare(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  return CFeatureChain()
    .Then([&] { return __SwitchUserSets(features); })
    .Then([&] { return features.GetFloatFeature("BlackLevel", m_fDefaultBlackLevel); })
    .Then([&] { return __ReadFormat(features, stFormat); })
    .Then([&] { return __WriteUserParam(features); })
    .Status();
}

int32_t CDeviceParamGuard::__SwitchUserSets(const CFeatureAccess &features)
{
  const int32_t nStatus = SaveUserSet(features, "UserSet0");
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  m_bUserSetPending = false;
  return LoadUserSet(features, "Default");
}

int32_t CDeviceParamGuard::__ReadFormat(const CFeatureAccess &features, SFrameFormat &stFormat)
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

int32_t CDeviceParamGuard::__WriteUserParam(const CFeatureAccess &features) const
{
  return CFeatureChain()
    .Then([&]() -> int32_t {
      // A camera that does not tell whether it has limits is taken for one that has none to remove.
      bool bImplemented = false;
      (void)features.IsFeatureImplemented("RemoveParameterLimit", bImplemented);
      return bImplemented ? features.SetEnumFeature("RemoveParameterLimit", m_strRemoveParameterLimit)
                          : int32_t{PLUGIN_STATUS_SUCCESS};
    })
    .Then([&] { return features.SetFloatFeature("ExposureTime", m_fExposureTime); })
    .Then([&] { return features.SetFloatFeature("Gain", m_fGain); })
    .Then([&] { return features.SetFloatFeature("BlackLevel", m_fBlackLevel); })
    .Then([&] { return features.SetIntFeature("DigitalShift", m_nDigitalShift); })
    .Then([&] { return __WriteOptional(features, "FixedPatternNoiseCorrectMode", m_strFixedPatternNoiseCorrectMode); })
    .Then([&] { return __WriteOptional(features, "DeadPixelCorrect", m_strDeadPixelCorrect); })
    .Status();
}

bool CDeviceParamGuard::IsBlackLevelDefault() const
{
  constexpr double TOLERANCE = 1e-6;
  return std::fabs(double{m_fDefaultBlackLevel} - double{m_fBlackLevel}) < TOLERANCE;
}

void CDeviceParamGuard::Restore(const CFeatureAccess &features)
{
  const bool bLoad = !m_bUserSetPending;
  m_bUserSetPending = false;
  // A selector that was never read cannot be put back, so it is not moved.
  if (!bLoad && m_strUserSetSelector.empty()) {
    return;
  }
  const bool bRestored =
    __PutBack(features, bLoad) == PLUGIN_STATUS_SUCCESS || __PutBack(features, bLoad) == PLUGIN_STATUS_SUCCESS;
  m_bOwed = bLoad && !bRestored;
}

// Every step is tried, whatever became of the one before.
int32_t CDeviceParamGuard::__PutBack(const CFeatureAccess &features, bool bLoad) const
{
  const auto set = [&](const std::string &strSet) {
    return CFeatureChain().Then([&] { return features.SetEnumFeature("UserSetSelector", strSet); }).Status();
  };
  const int32_t nSelectStatus = set("UserSet0");
  const int32_t nLoadStatus = bLoad ? features.ExecuteCommand("UserSetLoad") : int32_t{PLUGIN_STATUS_SUCCESS};
  const int32_t nSelectorStatus = set(m_strUserSetSelector);
  return nSelectStatus != PLUGIN_STATUS_SUCCESS ? nSelectStatus
         : nLoadStatus != PLUGIN_STATUS_SUCCESS ? nLoadStatus
                                                : nSelectorStatus;
}

void CDeviceParamGuard::RefreshStreaming(const CFeatureAccess &features)
{
  m_streaming = CStreamingState();
  m_streaming.SaveLate(features);
}
