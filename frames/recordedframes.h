/// \file
/// Dark and bright frames from a folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "camera/sensorformat.h"
#include "platform/result.h"

namespace ffc::frames {

/// All frames of a recording, as the camera delivers them. All have one size and one format.
struct SRecordedFrames {
  SSensorFormat stFormat;
  uint32_t nWidth = 0; ///< pixels
  uint32_t nHeight = 0;
  std::vector<std::vector<uint8_t>> listDark; ///< tightly packed, in the order of the file names; at least 2
  std::vector<std::vector<uint8_t>> listBright;
};

/// Reads the files "dark_*" and "bright_*" of every kind in ifilekind.h.
/// \param strPixelFormat PFNC name; empty: Mono8 or Mono16, as the files are
Result<SRecordedFrames> LoadRecordedFrames(const std::string &strFolder, const std::string &strPixelFormat);

} // namespace ffc::frames
