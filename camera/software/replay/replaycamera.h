/// \file
/// A camera that plays recorded frames.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "camera/icamera.h"
#include "frames/alignment.h"

namespace ffc::camera {

struct SReplayCameraOptions {
  std::string strFolder;      ///< with "dark_*" and "bright_*" files of any kind in frames/
  std::string strPixelFormat; ///< PFNC name; empty: as the files or their values are
  double dFrameRate = 50.0;   ///< frames per second: 0.1 to 10000
  std::optional<ffc::frames::EAlignment> eAlignment =
    std::nullopt; ///< of samples of 16 bits; none: as their values are
};

/// Reads all frames at once. Left-aligned samples are shifted, and the model's name says so; a depth that was guessed
/// is among the feature notes. Without dark frames the lens cannot be covered. Exposure, gain and black level can be
/// set and change nothing. \return why not: what is wrong with the folder or the options
Result<std::unique_ptr<ICamera>> CreateReplayCamera(const SReplayCameraOptions &stOptions);

} // namespace ffc::camera
