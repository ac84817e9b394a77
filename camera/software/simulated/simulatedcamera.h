/// \file
/// A camera without hardware.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "camera/correctionmode.h"
#include "camera/icamera.h"

namespace ffc::camera {

struct SSimulatedCameraOptions {
  std::string strPixelFormat = "Mono12"; ///< PFNC name; also says which sensor it is: mono or a Bayer layout
  uint32_t nWidth = 2048;                ///< of the sensor, pixels: even, 16 to 16384
  uint32_t nHeight = 1536;
  uint64_t nSeed = 1;                            ///< same seed, same settings: the same frames
  double dCornerFalloff = 0.6;                   ///< light in the corners, relative to the centre: 0.05 to 1
  double dFrameRate = 30.0;                      ///< frames per second: 0.1 to 10000
  ECorrectionMode eMode = ECorrectionMode::None; ///< the camera's own shading correction
  /// Of a camera that corrects itself: the file that is its flash, made when something is saved for the
  /// first time; empty: what is saved ends with the camera. A file serves cameras of one mode, colour
  /// layout and sensor size. When it names a saved user set to start with, that set's pixel format counts.
  std::string strFlashFile;
};

/// \return why not: what is wrong with the options
Result<std::unique_ptr<ICamera>> CreateSimulatedCamera(const SSimulatedCameraOptions &stOptions);

} // namespace ffc::camera
