/// \file
/// Where the frames of a software camera come from.
#pragma once

#include <cstdint>
#include <vector>

#include "camera/software/camerasettings.h"
#include "camera/software/scenestate.h"

namespace ffc::camera {

/// Used on the camera's thread only.
class IFrameSource {
public:
  virtual ~IFrameSource() = default;

  /// Fills one frame of stSettings.GetPayloadSize() bytes.
  /// \param nFrameId counts the camera's frames; with the same settings it gives the same bytes again
  virtual void Expose(const SCameraSettings &stSettings, const SScene &stScene, uint64_t nFrameId,
                      std::vector<uint8_t> &listFrame) = 0;
};

} // namespace ffc::camera
