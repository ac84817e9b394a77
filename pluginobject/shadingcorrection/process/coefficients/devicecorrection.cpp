#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"

#include <cstring>
#include <limits>
#include <utility>

#include "pluginobject/shadingcorrection/process/camerastate/userset.h"
#include "pluginobject/shadingcorrection/process/steps.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;

FFCInfo GetRecord(const CFrameBuffer &image)
{
  FFCInfo stInfo;
  std::memcpy(&stInfo, image.GetData() + (image.GetSize() - FFC_INFO_SIZE), FFC_INFO_SIZE);
  return stInfo;
}

void FillImage(const CFrameBuffer &body, const FFCInfo &stInfo, CFrameBuffer &image)
{
  image.CopyFrom(body);
  std::memcpy(image.GetData() + body.GetSize(), &stInfo, FFC_INFO_SIZE);
}

void ExchangeRecordBytes(CFrameBuffer &image)
{
  for (uint64_t nByte = image.GetSize() - FFC_INFO_SIZE; nByte < image.GetSize(); nByte += 2) {
    std::swap(image.GetData()[nByte], image.GetData()[nByte + 1]);
  }
}

int32_t ReadDeviceSettings(const CFeatureAccess &features, bool bColorCamera, FnApplyBlockEntry fnApplyBlockEntry,
                           SDeviceSettings &stSettings, FFCInfo &stInfo)
{
  std::string strPixelColorFilter;
  std::string strBlockSize;
  std::string strFrameCount;
  const int32_t nStatus =
    CSteps(features)
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
  const int32_t nStatus = CSteps(features).Set("FFCFrameCount", strEntry).Status();
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    ApplyFrameCountEntry(strEntry, stInfo.nFrameCount);
  }
  return nStatus;
}

int32_t ReadCoefficientsSize(const CFeatureAccess &features, uint64_t &nSize)
{
  int64_t nValue = 0;
  const int32_t nStatus = features.GetIntFeature("FFCCoefficientsSize", nValue);
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    nSize = static_cast<uint64_t>(nValue);
  }
  return nStatus;
}

int32_t AllocateCoefficients(uint64_t nSize, CFrameBuffer &image)
{
  // A failure of either kind leaves nothing behind.
  image.Release();
  const bool bAllocated = nSize <= std::numeric_limits<uint32_t>::max() && image.Allocate(nSize);
  return bAllocated ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_OUT_OF_MEMORY;
}

int32_t InitCoefficients(const CFeatureAccess &features, FFCInfo &stInfo, CFrameBuffer &image)
{
  uint64_t nSize = 0;
  return CSteps(features)
    .Then(ReadCoefficientsSize, features, nSize)
    .Then([&] {
      stInfo.nCoefficientsSize = static_cast<uint32_t>(nSize);
      return AllocateCoefficients(nSize, image);
    })
    .Status();
}

int32_t SwitchCorrectionOn(const CFeatureAccess &features)
{
  return features.SetEnumFeature("FlatFieldCorrection", "On");
}

int32_t SwitchCorrectionOff(const CFeatureAccess &features)
{
  return features.SetEnumFeature("FlatFieldCorrection", "Off");
}

int32_t ReadCoefficients(const CFeatureAccess &features, CFrameBuffer &image)
{
  return features.ReadRegisterFeature("FFCValueAll", image.GetData(), static_cast<int64_t>(image.GetSize()));
}

int32_t PutIntoForce(const CFeatureAccess &features, const CFrameBuffer &image, FFCInfo &stInfo)
{
  const int32_t nStatus =
    features.WriteRegisterFeature("FFCValueAll", image.GetData(), static_cast<int64_t>(image.GetSize()));
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  stInfo = GetRecord(image);
  return SwitchCorrectionOn(features);
}

int32_t LoadFlashCoefficients(const CFeatureAccess &features, CFrameBuffer &image)
{
  return CSteps(features).Execute("FFCFlashLoad").Then(ReadCoefficients, features, image).Status();
}

int32_t SaveFlashCoefficients(const CFeatureAccess &features)
{
  return CSteps(features)
    .Execute("FFCFlashSave")
    .Then(SwitchCorrectionOn, features)
    .Then(SaveUserSet, features, "UserSet0")
    .Set("UserSetDefault", "UserSet0")
    .Status();
}

} // namespace ffc::process
