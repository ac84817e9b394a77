#include "pluginobject/shadingcorrection/process/camerastate/whitebalance.h"

#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"
#include "pluginobject/shadingcorrection/process/steps.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;

namespace {

// Writes a saved entry; one that was never saved is left alone.
void RestoreEntry(const CFeatureAccess &features, const char *pName, const std::string &strSaved)
{
  if (!strSaved.empty()) {
    (void)TryTwice([&] { return CSteps(features).Set(pName, strSaved).Status(); });
  }
}

int32_t SaveRatio(const CFeatureAccess &features, const char *pColour, float &fSaved)
{
  return CSteps(features).Set("BalanceRatioSelector", pColour).Get("BalanceRatio", fSaved).Status();
}

int32_t WriteRatio(const CFeatureAccess &features, const char *pColour, float fRatio)
{
  return CSteps(features)
    .Set("BalanceRatioSelector", pColour)
    .Then(&CFeatureAccess::RestoreFloatFeature, features, "BalanceRatio", fRatio)
    .Status();
}

// A camera may refuse ratios as long as its balance runs, which may never end by itself.
void EndRunningBalance(const CFeatureAccess &features)
{
  std::string strState;
  (void)features.GetEnumFeature("BalanceWhiteAuto", strState);
  if (strState == "Once") {
    (void)features.SetEnumFeature("BalanceWhiteAuto", "Off");
  }
}

void RestoreRatio(const CFeatureAccess &features, const char *pColour, float fSaved)
{
  if (WriteRatio(features, pColour, fSaved) != PLUGIN_STATUS_SUCCESS) {
    EndRunningBalance(features);
    (void)WriteRatio(features, pColour, fSaved);
  }
}

} // namespace

void RunWhiteBalance(const CFeatureAccess &features, CFrameExchange &exchange, uint32_t nTimeout,
                     const std::function<void()> &fnStartStream)
{
  constexpr int ATTEMPTS = 5;
  exchange.RequestFrame();
  exchange.ForgetFrame();
  fnStartStream();
  for (int nAttempt = 0; nAttempt < ATTEMPTS && exchange.WaitFrameReady(nTimeout); ++nAttempt) {
    std::string strState;
    // A camera that does not tell its state is given the remaining frames.
    (void)features.GetEnumFeature("BalanceWhiteAuto", strState);
    if (strState == "Off") {
      break;
    }
    exchange.RequestFrame();
  }
  exchange.WithdrawRequest();
}

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
  const int32_t nStatus = features.IsFeatureImplemented("BalanceWhiteAuto", m_bBalanceWhite);
  if (nStatus != PLUGIN_STATUS_SUCCESS || !m_bBalanceWhite) {
    return nStatus;
  }
  return CSteps(features)
    .Get("BalanceRatioSelector", m_strBalanceRatioSelector)
    .Get("BalanceWhiteAuto", m_strBalanceWhiteAuto)
    .Then(&CWhiteBalance::SaveRatios, this, features)
    .Status();
}

int32_t CWhiteBalance::SaveRatios(const CFeatureAccess &features)
{
  if (m_strBalanceWhiteAuto != "Continuous") {
    return PLUGIN_STATUS_SUCCESS;
  }
  return CSteps(features)
    .Then(SaveRatio, features, "Red", m_fRatioRed)
    .Then(SaveRatio, features, "Green", m_fRatioGreen)
    .Then(SaveRatio, features, "Blue", m_fRatioBlue)
    .Status();
}

int32_t CWhiteBalance::SwitchOn(const CFeatureAccess &features)
{
  bool bLampHouse = false;
  return CSteps(features)
    .Then(&CFeatureAccess::IsFeatureWritable, features, "AWBLampHouse", bLampHouse)
    .Then(
      [&] { return bLampHouse ? features.GetEnumFeature("AWBLampHouse", m_strAWBLampHouse) : PLUGIN_STATUS_SUCCESS; })
    .Then([&] { return bLampHouse ? features.SetEnumFeature("AWBLampHouse", "Adaptive") : PLUGIN_STATUS_SUCCESS; })
    .Then([&] {
      m_bOnceWritten = true;
      return features.SetEnumFeature("BalanceWhiteAuto", "Once");
    })
    .Status();
}

void CWhiteBalance::Restore(const CFeatureAccess &features)
{
  if (m_bBalanceWhite) {
    RestoreLampHouse(features);
    if (m_strBalanceWhiteAuto == "Continuous") {
      RestoreRatios(features);
      RestoreEntry(features, "BalanceRatioSelector", m_strBalanceRatioSelector);
    } else if (m_bOnceWritten) {
      RestoreEntry(features, "BalanceWhiteAuto", m_strBalanceWhiteAuto);
    }
  }
  *this = CWhiteBalance();
}

// A lamp house that is gone meanwhile does not keep the rest from being put back.
void CWhiteBalance::RestoreLampHouse(const CFeatureAccess &features) const
{
  bool bImplemented = true;
  (void)features.IsFeatureImplemented("AWBLampHouse", bImplemented);
  if (!bImplemented && !m_strAWBLampHouse.empty()) {
    (void)features.IsFeatureImplemented("AWBLampHouse", bImplemented); // it was there: asked twice, as it is set twice
  }
  if (bImplemented) {
    RestoreEntry(features, "AWBLampHouse", m_strAWBLampHouse);
  }
}

// "Once" is written only when all of them are saved.
void CWhiteBalance::RestoreRatios(const CFeatureAccess &features) const
{
  if (m_bOnceWritten) {
    RestoreRatio(features, "Red", m_fRatioRed);
    RestoreRatio(features, "Green", m_fRatioGreen);
    RestoreRatio(features, "Blue", m_fRatioBlue);
  }
}

} // namespace ffc::process
