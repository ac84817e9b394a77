#include "camera/software/selfcorrection/selfcorrection.h"

#include <utility>

namespace ffc::camera {

using genapi::GetLayoutName;

namespace {

// By which the flash file of one camera is told from that of another, which has other settings or another
// region.
std::string DescribeCamera(const SCameraDescription &stDescription, ECorrectionMode eMode)
{
  return std::string(eMode == ECorrectionMode::FlatField ? "flat field" : "vignetting") + ", " +
         GetLayoutName(stDescription.listFormats.front().eLayout) + ", " + std::to_string(stDescription.nSensorWidth) +
         " x " + std::to_string(stDescription.nSensorHeight);
}

// All settings of the camera, in their factory state.
CSettingList ListSettings(genapi::CSoftwareNodeMap &deviceMap, CWhiteBalance *pWhiteBalance)
{
  CSettingList settings;
  if (pWhiteBalance != nullptr) {
    pWhiteBalance->AddSettings(settings);
  }
  settings.AddNodes(deviceMap);
  return settings;
}

} // namespace

CSelfCorrection::CSelfCorrection(const SCameraDescription &stDescription, const SSelfCorrectionOptions &stOptions,
                                 CCameraFeatures &features, ffc::camera::CWhiteBalance *pWhiteBalance)
  : m_stOptions(stOptions), m_bColor(pWhiteBalance != nullptr), m_features(features),
    m_flash(stOptions.strFlashFile, DescribeCamera(stDescription, stOptions.eMode), {DEFAULT_USER_SET, {}, nullptr}),
    m_correction(features.GetDeviceMap(), stOptions.eMode),
    m_register(features.GetDeviceMap(), m_flash, [this] { return GetLayout(); })
{
  genapi::CSoftwareNodeMap &deviceMap = features.GetDeviceMap();
  if (stOptions.eMode == ECorrectionMode::FlatField) {
    m_sensor.emplace(deviceMap);
  }
  deviceMap.Find<genapi::CSoftwareEnumeration>("PixelFormat")->Select(stDescription.listFormats.front().pName);
  m_userSets.emplace(deviceMap, m_flash, ListSettings(deviceMap, pWhiteBalance));
}

Result<> CSelfCorrection::PowerOn()
{
  const auto lock = m_features.GetDeviceMap().Lock();
  Result<> result = RunUntilFailure([this] { return m_flash.Load(); }, [this] { return m_userSets->PowerOn(); });
  if (!result) {
    return result;
  }
  if (m_userSets->StartsWithDefault()) {
    m_features.GetDeviceMap().Find<genapi::CSoftwareEnumeration>("PixelFormat")->Select(m_stOptions.strPixelFormat);
  }
  m_register.PowerOn();
  return {};
}

void CSelfCorrection::CompleteSettings(SCameraSettings &stSettings) const
{
  if (m_sensor) {
    m_sensor->CompleteSettings(stSettings);
  }
}

SFrameCorrection CSelfCorrection::GetFrameCorrection() const
{
  SFrameCorrection stCorrection;
  stCorrection.pCoefficients = m_correction.IsCorrectionOn() ? m_register.GetApplicable() : nullptr;
  stCorrection.dExpectGray = m_correction.GetExpectGray();
  stCorrection.nDigitalShift = m_sensor ? m_sensor->GetDigitalShift() : 0;
  return stCorrection;
}

SBlockLayout CSelfCorrection::GetLayout() const
{
  const SCameraSettings stSettings = m_features.GetSettings();
  SBlockLayout stLayout;
  stLayout.eMode = m_stOptions.eMode;
  stLayout.bColor = m_bColor;
  stLayout.nOffsetX = stSettings.nOffsetX;
  stLayout.nOffsetY = stSettings.nOffsetY;
  stLayout.nWidth = stSettings.nWidth;
  stLayout.nHeight = stSettings.nHeight;
  stLayout.nBlockSide = m_correction.GetBlockSide();
  return stLayout;
}

} // namespace ffc::camera
