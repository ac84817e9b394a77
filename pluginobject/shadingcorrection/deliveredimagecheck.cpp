#include "pluginobject/shadingcorrection/deliveredimagecheck.h"

#include <string>

#include "pluginobject/statuscode.h"

namespace ffc::dialog {

using pluginobject::CFeatureAccess;

namespace {

// Reads a feature if it is implemented.
template <class TValue, class TRead>
int32_t ReadIfImplemented(const CFeatureAccess &features, const char *pName, TRead fnRead, bool &bRead, TValue &value)
{
  int32_t nStatus = features.IsFeatureImplemented(pName, bRead);
  if (nStatus == PLUGIN_STATUS_SUCCESS && bRead) {
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

} // namespace ffc::dialog
