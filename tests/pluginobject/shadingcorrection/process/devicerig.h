/// \file
/// The rig of the process for cameras that correct flat fields themselves.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_dev.h"
#include "tests/pluginobject/shadingcorrection/process/processrig.h"
#include "tests/support/correctingcamera.h"

namespace ffc::test {

/// A camera that takes negative exposures, which shorten the waits for its frames.
class CDeviceRig : public CProcessRig {
public:
  /// \param setAbsent as in CCorrectingCamera
  explicit CDeviceRig(const std::string &strPixelFormat = "Mono8", int64_t nWidth = 64, int64_t nHeight = 64,
                      const std::set<std::string> &setAbsent = {});

  CCorrectingCamera &Camera() { return m_camera; }
  CShadingCorrectionPro_Dev &Process() { return m_process; }

  /// Features by name as in TakeSnapshot, without the coefficients.
  Settings TakeSettings();
  /// Brings every feature that an acquisition touches into a state that is not the factory's, and keeps another
  /// one in "UserSet0".
  void ChangeSettings();

  /// Coefficients in force, computed from uniform frames.
  int32_t Correct(uint32_t nDarkGray, uint32_t nBrightGray);
  /// Whether the coefficients in force were computed with a dark frame whose blocks are not all 0.
  bool IsDarkInForce();

private:
  CCorrectingCamera &m_camera;
  CShadingCorrectionPro_Dev &m_process;
};

} // namespace ffc::test
