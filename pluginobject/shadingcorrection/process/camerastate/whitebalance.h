/// \file
/// The one-shot white balance around the bright frames of a colour camera.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"

namespace ffc::process {

/// Lets a camera finish a one-shot white balance: starts the stream and takes up to 5 frames, until BalanceWhiteAuto
/// reads "Off" or a frame fails to come. A balance that does not finish is no error. No request stays pending.
/// User-interface thread only.
/// \param nTimeout milliseconds to wait for each frame
void RunWhiteBalance(const pluginobject::CFeatureAccess &features, CFrameExchange &exchange, uint32_t nTimeout,
                     const std::function<void()> &fnStartStream);

/// Saves the camera's white-balance settings, lets it balance once, and puts the settings back.
/// User-interface thread only. Statuses are those of the feature access.
class CWhiteBalance {
public:
  /// Balances the camera with frames of the stream that fnStartStream starts. Also starts the stream when
  /// the camera has no automatic white balance. A balance that does not finish is no error.
  /// \param nTimeout milliseconds to wait for each frame
  [[nodiscard]] int32_t BalanceOnce(const pluginobject::CFeatureAccess &features, CFrameExchange &exchange,
                                    uint32_t nTimeout, const std::function<void()> &fnStartStream);

  /// Puts back what the last BalanceOnce changed, each setting a second time when the first fails, and forgets it.
  void Restore(const pluginobject::CFeatureAccess &features);

private:
  [[nodiscard]] int32_t Save(const pluginobject::CFeatureAccess &features);
  [[nodiscard]] int32_t SaveRatios(const pluginobject::CFeatureAccess &features);
  [[nodiscard]] int32_t SwitchOn(const pluginobject::CFeatureAccess &features);
  void RestoreLampHouse(const pluginobject::CFeatureAccess &features) const;
  void RestoreRatios(const pluginobject::CFeatureAccess &features) const;

  bool m_bBalanceWhite = false; // the camera has BalanceWhiteAuto
  bool m_bOnceWritten = false;  // or its writing was tried
  float m_fRatioRed = 0.0F;
  float m_fRatioGreen = 0.0F;
  float m_fRatioBlue = 0.0F;
  std::string m_strBalanceWhiteAuto;
  std::string m_strAWBLampHouse;
  std::string m_strBalanceRatioSelector;
};

} // namespace ffc::process
