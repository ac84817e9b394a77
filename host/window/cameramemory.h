/// \file
/// What the window remembers of each camera.
#pragma once

#include <optional>

#include <QString>

#include "camera/icamera.h"
#include "quality/limits.h"

namespace ffc::host {

/// Of one camera, as it was left. Another camera knows nothing of it.
struct SCameraMemory {
  QString strFile;                          ///< of coefficients, loaded or saved last; empty: none
  int nFrames = 0;                          ///< bright frames averaged last; 0: none were
  int nExpectGray = -1;                     ///< that the user chose instead of the suggested one; -1: none
  std::optional<quality::SLimits> stLimits; ///< that pass; none: this camera is new
};

/// Where all that is remembered of a camera stands in the settings: by its maker and serial number. What stands where
/// former versions kept it is brought there.
QString FindCameraGroup(camera::ICamera &camera);

/// Percent-encoded: a name may have anything in it, a key may not.
QString ToSettingsKey(const QString &strName);

/// \param strGroup of FindCameraGroup
SCameraMemory LoadCameraMemory(const QString &strGroup);
void SaveCameraMemory(const QString &strGroup, const SCameraMemory &stMemory);

} // namespace ffc::host
