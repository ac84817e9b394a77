/// \file
/// Frames from a folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "camera/sensorformat.h"

/// All frames of a recording, as the camera delivers them. All have one size and one format.
struct SRecordedFrames {
  SSensorFormat stFormat;
  uint32_t nWidth = 0; ///< pixels
  uint32_t nHeight = 0;
  std::vector<std::vector<uint8_t>> listDark; ///< tightly packed, in the order of the file names; at least 2
  std::vector<std::vector<uint8_t>> listBright;
};

/// Reads "dark_*.png" and "bright_*.png", grey, 8 or 16 bit with right-aligned values.
/// \param strPixelFormat PFNC name; empty: Mono8 or Mono16, as the files are
/// \return empty, or what is wrong; then *pstFrames is as it was
std::string LoadRecordedFrames(const std::string &strFolder, const std::string &strPixelFormat,
                               SRecordedFrames *pstFrames);
