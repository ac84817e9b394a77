/// \file
/// What the window remembers of each camera.
#pragma once

#include <optional>

#include <QString>

#include "quality/limits.h"

namespace ffc::host {

/// Of one camera, as it was left. Another camera knows nothing of it.
struct SCameraMemory {
  QString strFile;          ///< of coefficients, loaded or saved last; empty: none
  int nFrames = 0;          ///< bright frames averaged last; 0: none were
  int nExpectGray = -1;     ///< that the user chose instead of the suggested one; -1: none
  std::optional<quality::SLimits> stLimits; ///< that pass; none: this camera is new
};

/// \param strCamera display name, which has the serial number
SCameraMemory LoadCameraMemory(const QString &strCamera);
void SaveCameraMemory(const QString &strCamera, const SCameraMemory &stMemory);

} // namespace ffc::host
