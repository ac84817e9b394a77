#include "pluginobject/shadingcorrection/process/camerastate/whitebalance.h"

#include "pluginobject/shadingcorrection/process/camerastate/balancerun.h"
#include "pluginobject/shadingcorrection/process/featurechain.h"

namespace {

// Writes a saved entry; one that was never saved is left alone.
int32_t RestoreEntry(const CFeatureAccess &features, const char *pName, const std::string &strSaved)
{
  return strSaved.empty() ? int32_t{PLUGIN_STATUS_SUCCESS} : features.SetEnumFeature(pName, strSaved);
}

// A lamp house that is gone meanwhile does not keep the rest from being put back.
int32_t RestoreLampHouse(const CFeatureAccess &features, const std::string &strSaved)
{
  bool bImplemented = false;
  const int32_t nStatus = features.IsFeatureImplemented("AWBLampHouse", bImplemented);
  return bImplemented ? RestoreEntry(features, "AWBLampHouse", strSaved) : nStatus;
}

int32_t SaveRatio(const CFeatureAccess &features, const char *pColour, std::optional<float> &fSaved)
{
  float fRatio = 0.0F;
  const int32_t nStatus = CFeatureChain()
                            .Then([&] { return features.SetEnumFeature("BalanceRatioSelector", pColour); })
                            .Then([&] { return features.GetFloatFeature("BalanceRatio", fRatio); })
                            .Status();
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    fSaved = fRatio;
  }
  return nStatus;
}

int32_t RestoreRatio(const CFeatureAccess &features, const char *pColour, const std::optional<float> &fSaved)
{
  if (!fSaved.has_value()) {
    return PLUGIN_STATUS_SUCCESS;
  }
  return CFeatureChain()
    .Then([&] { return features.SetEnumFeature("BalanceRatioSelector", pColour); })
    .Then([&] { return features.SetFloatFeature("BalanceRatio", *fSaved); })
    .Status();
}

} // namespace

int32_t CWhiteBalance::BalanceOnce(const CFeatureAccess &features, CFrameExchange &exchange, uint32_t nTimeout,
                                   const std::function<void()> &fnStartStream)
{
  const int32_t nSaveStatus = Save(features);
  if (nSaveStatus != PLUGIN_STATUS_SUCCESS) {
    return nSaveStatus;
  }
  if (!m_bBalanceWhite) {
    fnStartStream();
    return PLUGIN_STATUS_SUCCESS;
  }
  const int32_t nStatus = SwitchOn(features);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  RunWhiteBalance(features, exchange, nTimeout, fnStartStream);
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CWhiteBalance::Save(const CFeatureAccess &features)
{
  const int32_t nOwedStatus = Restore(features);
  if (nOwedStatus != PLUGIN_STATUS_SUCCESS) {
    return nOwedStatus;
  }
  int32_t nStatus = features.IsFeatureImplemented("BalanceWhiteAuto", m_bBalanceWhite);
  if (nStatus != PLUGIN_STATUS_SUCCESS || !m_bBalanceWhite) {
    return nStatus;
  }
  return CFeatureChain()
    .Then([&] { return features.GetEnumFeature("BalanceRatioSelector", m_strBalanceRatioSelector); })
    .Then([&] { return features.GetEnumFeature("BalanceWhiteAuto", m_strBalanceWhiteAuto); })
    .Then([&] { return SaveRatios(features); })
    .Status();
}

int32_t CWhiteBalance::SaveRatios(const CFeatureAccess &features)
{
  if (m_strBalanceWhiteAuto != "Continuous") {
    return PLUGIN_STATUS_SUCCESS;
  }
  return CFeatureChain()
    .Then([&] { return SaveRatio(features, "Red", m_fRatioRed); })
    .Then([&] { return SaveRatio(features, "Green", m_fRatioGreen); })
    .Then([&] { return SaveRatio(features, "Blue", m_fRatioBlue); })
    .Status();
}

int32_t CWhiteBalance::SwitchOn(const CFeatureAccess &features)
{
  bool bLampHouse = false;
  return CFeatureChain()
    .Then([&] { return features.IsFeatureWritable("AWBLampHouse", bLampHouse); })
    .Then([&]() -> int32_t {
      return bLampHouse ? features.GetEnumFeature("AWBLampHouse", m_strAWBLampHouse) : PLUGIN_STATUS_SUCCESS;
    })
    .Then([&]() -> int32_t {
      return bLampHouse ? features.SetEnumFeature("AWBLampHouse", "Adaptive") : PLUGIN_STATUS_SUCCESS;
    })
    .Then([&] { return features.SetEnumFeature("BalanceWhiteAuto", "Once"); })
    .Status();
}

int32_t CWhiteBalance::RestoreRatios(const CFeatureAccess &features) const
{
  return CFeatureChain()
    .Then([&] { return RestoreRatio(features, "Red", m_fRatioRed); })
    .Then([&] { return RestoreRatio(features, "Green", m_fRatioGreen); })
    .Then([&] { return RestoreRatio(features, "Blue", m_fRatioBlue); })
    .Then([&] { return RestoreEntry(features, "BalanceRatioSelector", m_strBalanceRatioSelector); })
    .Status();
}

int32_t CWhiteBalance::PutBack(const CFeatureAccess &features) const
{
  return CFeatureChain()
    .Then([&] { return RestoreLampHouse(features, m_strAWBLampHouse); })
    .Then([&] {
      return m_strBalanceWhiteAuto == "Continuous" ? RestoreRatios(features)
                                                   : RestoreEntry(features, "BalanceWhiteAuto", m_strBalanceWhiteAuto);
    })
    .Status();
}

int32_t CWhiteBalance::Restore(const CFeatureAccess &features)
{
  if (!m_bBalanceWhite) {
    return PLUGIN_STATUS_SUCCESS;
  }
  int32_t nStatus = PutBack(features);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    nStatus = PutBack(features);
  }
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    *this = CWhiteBalance();
  }
  return nStatus;
}
