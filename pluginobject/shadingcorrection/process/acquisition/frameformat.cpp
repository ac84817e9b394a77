#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "pluginobject/pixelformat.h"
#include "pluginobject/shadingcorrection/process/steps.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;

namespace {

int32_t ReadFrameFormat(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  const int32_t nStatus = CSteps(features)
                            .Then(ReadPayloadSize, features, stFormat)
                            .Then(ReadPixelFormat, features, stFormat)
                            .Then(ReadWidth, features, stFormat)
                            .Then(ReadHeight, features, stFormat)
                            .Status();
  stFormat.ApplyUnpackedSize();
  return nStatus;
}

} // namespace

int32_t SFrameFormat::GetBitDepth() const
{
  return GetPixelFormatBitDepth(nPixelFormat);
}

uint64_t SFrameFormat::GetPixelCount() const
{
  constexpr int64_t LARGEST = std::numeric_limits<int32_t>::max();
  const bool bSane = nWidth > 0 && nHeight > 0 && nWidth <= LARGEST && nHeight <= LARGEST;
  return bSane ? static_cast<uint64_t>(nWidth) * static_cast<uint64_t>(nHeight) : 0;
}

bool SFrameFormat::FitsInto(uint64_t nBytes) const
{
  const uint64_t nBytesPerPixel = GetBitDepth() == 8 ? 1 : 2;
  const uint64_t nPixels = GetPixelCount();
  return nPixels > 0 && nPixels * nBytesPerPixel <= nBytes;
}

void SFrameFormat::ApplyUnpackedSize()
{
  const int64_t nUnpacked = GetUnpackedPayloadSize(nPixelFormat, nWidth, nHeight);
  if (nUnpacked != 0) {
    nFrameSize = static_cast<uint64_t>(nUnpacked);
  }
}

int32_t ReadPayloadSize(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  int64_t nPayloadSize = 0;
  const int32_t nStatus = features.GetIntFeature("PayloadSize", nPayloadSize);
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    stFormat.nFrameSize = static_cast<uint64_t>(nPayloadSize);
  }
  return nStatus;
}

int32_t ReadWidth(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  return features.GetIntFeature("Width", stFormat.nWidth);
}

int32_t ReadHeight(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  return features.GetIntFeature("Height", stFormat.nHeight);
}

int32_t ReadPixelFormat(const CFeatureAccess &features, SFrameFormat &stFormat)
{
  int64_t nPixelFormat = 0;
  const int32_t nStatus = features.GetEnumIntFeature("PixelFormat", nPixelFormat);
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    stFormat.nPixelFormat = static_cast<uint32_t>(nPixelFormat);
  }
  return nStatus;
}

int32_t CheckFrameSize(const CFeatureAccess &features, const SFrameFormat &stKept)
{
  SFrameFormat stNow;
  const int32_t nStatus = ReadFrameFormat(features, stNow);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  return stNow.nFrameSize == stKept.nFrameSize ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_BUFFER_SIZE_ERROR;
}

int32_t CheckFrameFormat(const CFeatureAccess &features, const SFrameFormat &stKept)
{
  SFrameFormat stNow;
  const int32_t nStatus = ReadFrameFormat(features, stNow);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  const bool bSame = stNow.nFrameSize == stKept.nFrameSize && stNow.HasSameShape(stKept);
  return bSame ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_BUFFER_SIZE_ERROR;
}

bool ReadIsColorCamera(const CFeatureAccess &features)
{
  bool bColor = false;
  (void)features.IsFeatureImplemented("PixelColorFilter", bColor);
  return bColor;
}

bool IsBayerFormatSelected(const CFeatureAccess &features, bool bColorCamera)
{
  if (!bColorCamera) {
    return true;
  }
  std::vector<std::string> listEntries;
  std::string strCurrent;
  if (features.GetEnumEntries("PixelFormat", listEntries) != PLUGIN_STATUS_SUCCESS ||
      features.GetEnumFeature("PixelFormat", strCurrent) != PLUGIN_STATUS_SUCCESS) {
    return false;
  }
  const auto isBayer = [](const std::string &strName) { return strName.find("Bayer") != std::string::npos; };
  return std::all_of(listEntries.begin(), listEntries.end(), isBayer) || isBayer(strCurrent);
}

} // namespace ffc::process
