/// \file
/// The white balance of a colour camera.
#pragma once

#include <array>
#include <cstdint>

#include "camera/software/camerasettings.h"
#include "camera/software/settinglist.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

/// Declares BalanceWhiteAuto, BalanceRatioSelector, BalanceRatio and AWBLampHouse, and does on each
/// frame what BalanceWhiteAuto is set to: "Once" settles over a few frames and then turns itself "Off". Ratios can be
/// written only while it is "Off".
class CWhiteBalance {
public:
  /// Frames that "Once" takes.
  static constexpr int SETTLING_FRAMES = 3;

  /// \param deviceMap must outlive this object
  explicit CWhiteBalance(genapi::CSoftwareNodeMap &deviceMap);

  /// The gain of each colour, by EColor.
  std::array<double, genapi::COLOR_COUNT> GetRatios() const;

  /// Adds the three ratios, in place of the selected one, and BalanceWhiteAuto, whose "Once" starts afresh
  /// when it is brought back.
  void AddSettings(CSettingList &settings);

  /// Looks at a frame before it is delivered. Only on the camera's thread.
  /// \param stSettings what the frame was exposed with, its ratios included
  void Process(const SCameraSettings &stSettings, const void *pFrame);

private:
  void AdjustTo(const std::array<double, genapi::COLOR_COUNT> &adSignal);

  genapi::CSoftwareNodeMap &m_deviceMap; ///< its lock guards the members below
  genapi::CSoftwareEnumeration *m_pAuto = nullptr;
  genapi::CSoftwareEnumeration *m_pSelector = nullptr;
  genapi::CSoftwareEnumeration *m_pLamp = nullptr;
  std::array<double, genapi::COLOR_COUNT> m_adRatios{1.0, 1.0, 1.0};
  int m_nFramesLeft = 0;
};

} // namespace ffc::camera
