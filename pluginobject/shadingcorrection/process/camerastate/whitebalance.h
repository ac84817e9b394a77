/// \file
/// The one-shot white balance around the bright frames of a colour camera.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"

/// Saves the camera's white-balance settings, lets it balance once, and puts the settings back.
/// User-interface thread only. Statuses are those of the feature access.
class CWhiteBalance {
public:
  /// Balances the camera with frames of the stream that fnStartStream starts. Also starts the stream when
  /// the camera has no automatic white balance. A balance that does not finish is no error.
  /// \param nTimeout milliseconds to wait for each frame
  int32_t BalanceOnce(const CFeatureAccess &features, CFrameExchange &exchange, uint32_t nTimeout,
                      const std::function<void()> &fnStartStream);

  /// Puts back what the last BalanceOnce saved, a second time when the first fails, and forgets it. What the camera
  /// refuses is owed to it: the next call, or the next balance before it begins, tries again.
  int32_t Restore(const CFeatureAccess &features);

private:
  int32_t Save(const CFeatureAccess &features);
  int32_t PutBack(const CFeatureAccess &features) const;
  int32_t SaveRatios(const CFeatureAccess &features);
  int32_t SwitchOn(const CFeatureAccess &features);
  int32_t RestoreRatios(const CFeatureAccess &features) const;

  bool m_bBalanceWhite = false; // the camera has BalanceWhiteAuto
  // Empty: not saved, so not put back.
  std::optional<float> m_fRatioRed;
  std::optional<float> m_fRatioGreen;
  std::optional<float> m_fRatioBlue;
  std::string m_strBalanceWhiteAuto;
  std::string m_strAWBLampHouse;
  std::string m_strBalanceRatioSelector;
};
