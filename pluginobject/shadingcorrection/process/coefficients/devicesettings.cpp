#include "pluginobject/shadingcorrection/process/coefficients/devicesettings.h"

#include "pluginobject/shadingcorrection/process/steps.h"

bool ReadIsColorCamera(const CFeatureAccess &features)
{
  bool bColor = false;
  (void)features.IsFeatureImplemented("PixelColorFilter", bColor);
  return bColor;
}

int32_t ReadDeviceSettings(const CFeatureAccess &features, bool bColorCamera, FnApplyBlockEntry fnApplyBlockEntry,
                           SDeviceSettings &stSettings, FFCInfo &stInfo)
{
  std::string strPixelColorFilter;
  std::string strBlockSize;
  std::string strFrameCount;
  const int32_t nStatus =
    ffc::process::CSteps(features)
      .Then([&] {
        return bColorCamera ? features.GetEnumFeature("PixelColorFilter", strPixelColorFilter) : PLUGIN_STATUS_SUCCESS;
      })
      .Get("FFCBlockSize", strBlockSize)
      .Get("FFCFrameCount", strFrameCount)
      .Status();
  // Also of a camera that has lost its filter since the last time.
  stSettings.strPixelColorFilter = strPixelColorFilter;
  fnApplyBlockEntry(strBlockSize, stSettings.stBlock);
  stInfo.nBlockSizeCode = stSettings.stBlock.nCode;
  ApplyFrameCountEntry(strFrameCount, stInfo.nFrameCount);
  return nStatus;
}

int32_t WriteFrameCount(const CFeatureAccess &features, const std::string &strEntry, FFCInfo &stInfo)
{
  const int32_t nStatus = ffc::process::CSteps(features).Set("FFCFrameCount", strEntry).Status();
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    ApplyFrameCountEntry(strEntry, stInfo.nFrameCount);
  }
  return nStatus;
}
