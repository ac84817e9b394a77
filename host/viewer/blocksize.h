/// \file
/// The blocks in which a self-correcting camera keeps its coefficients.
#pragma once

#include <cstdint>

#include "camera/icamera.h"
#include "platform/result.h"

namespace ffc::host {

/// Selects the side of a self-correcting camera's coefficient blocks. Only while it does not stream.
/// \param nSide pixels; 0 leaves the camera's own choice
Result<> SelectBlockSize(camera::ICamera &camera, uint32_t nSide);

/// Side of the coefficient blocks in pixels; 0 for a camera that has none.
uint32_t ReadBlockSize(camera::ICamera &camera);

} // namespace ffc::host
