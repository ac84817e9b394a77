/// \file
/// A camera that plays recorded frames.
#pragma once

#include <memory>
#include <string>

#include "camera/icamera.h"

namespace ffc::camera {

struct SReplayCameraOptions {
  std::string strFolder;      ///< with "dark_*" and "bright_*" files of any kind in frames/
  std::string strPixelFormat; ///< PFNC name; empty: Mono8 or Mono16, as the files are
  double dFrameRate = 50.0;   ///< frames per second: 0.1 to 10000
};

/// Reads all frames at once. Left-aligned samples of the stated depth are shifted, and the model's name says so.
/// Exposure, gain and black level can be set and change nothing. \return why not: what is wrong with the folder or the
/// options
Result<std::unique_ptr<ICamera>> CreateReplayCamera(const SReplayCameraOptions &stOptions);

} // namespace ffc::camera
