#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "genapi/pfnc.h"
#include "pluginobject/shadingcorrection/process/steps.h"

using ffc::genapi::EPacking;
using ffc::genapi::FindPixelFormat;
using ffc::genapi::SPixelFormat;

namespace {

// Unpacked by the host as the other packed formats are, but its depth is taken for unknown.
constexpr uint32_t MONO_14_PACKED = ffc::genapi::GetPixelFormatCode("Mono14p");

} // namespace

int32_t GetPixelFormatBitDepth(uint32_t nPixelFormat)
{
  const SPixelFormat *pFormat = FindPixelFormat(nPixelFormat);
  return pFormat == nullptr || nPixelFormat == MONO_14_PACKED ? -1 : static_cast<int32_t>(pFormat->nBitDepth);
}

int64_t GetUnpackedPayloadSize(uint32_t nPixelFormat, int64_t nWidth, int64_t nHeight)
{
  constexpr int64_t LARGEST = std::numeric_limits<int64_t>::max();
  constexpr int64_t BYTES_PER_SAMPLE = 2;
  const SPixelFormat *pFormat = FindPixelFormat(nPixelFormat);
  if (pFormat == nullptr || pFormat->ePacking == EPacking::None || nWidth <= 0 || nHeight <= 0 ||
      nWidth > LARGEST / BYTES_PER_SAMPLE / nHeight) {
    return 0;
  }
  return nWidth * nHeight * BYTES_PER_SAMPLE;
}

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

// Reads a feature if it is implemented.
template <class TValue, class TRead>
int32_t ReadIfImplemented(const CFeatureAccess &features, const char *pName, TRead fnRead, bool &bRead, TValue &value)
{
  int32_t nStatus = features.IsFeatureImplemented(pName, bRead);
  if (bRead) {
    nStatus = (features.*fnRead)(pName, value);
  }
  return nStatus;
}

template <class TValue>
int32_t ComparePair(const CFeatureAccess &outputFeatures, const char *pOutputName, const CFeatureAccess &deviceFeatures,
                    const char *pDeviceName, int32_t (CFeatureAccess::*fnRead)(const char *, TValue &) const)
{
  bool bOutput = false;
  TValue output = TValue();
  int32_t nStatus = ReadIfImplemented(outputFeatures, pOutputName, fnRead, bOutput, output);
  if (nStatus != PLUGIN_STATUS_SUCCESS || !bOutput) {
    return nStatus;
  }
  bool bDevice = false;
  TValue device = TValue();
  nStatus = ReadIfImplemented(deviceFeatures, pDeviceName, fnRead, bDevice, device);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  return bDevice && output != device ? PLUGIN_STATUS_DEVICE_PARAMS_MODIFIED : PLUGIN_STATUS_SUCCESS;
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

int32_t CheckDeliveredImage(const CFeatureAccess &outputFeatures, const CFeatureAccess &deviceFeatures)
{
  const int32_t nStatus = ComparePair<std::string>(outputFeatures, "OutPixelFormat", deviceFeatures, "PixelFormat",
                                                   &CFeatureAccess::GetEnumFeature);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  constexpr const char *INTEGER_PAIRS[][2] = {
    {"OutputPayloadSize", "PayloadSize"}, {"OutputWidth", "Width"}, {"OutputHeight", "Height"}};
  for (const auto &apPair : INTEGER_PAIRS) {
    const int32_t nPairStatus =
      ComparePair<int64_t>(outputFeatures, apPair[0], deviceFeatures, apPair[1], &CFeatureAccess::GetIntFeature);
    if (nPairStatus != PLUGIN_STATUS_SUCCESS) {
      return nPairStatus;
    }
  }
  return PLUGIN_STATUS_SUCCESS;
}

int32_t GetBayerType(const std::string &strPixelColorFilter)
{
  return static_cast<int32_t>(genapi::GetColorLayout(strPixelColorFilter));
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
