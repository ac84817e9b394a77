/// \file
/// Dark and bright frames from a folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "frames/ifilekind.h"
#include "platform/result.h"

namespace ffc::frames {

/// What the samples are, whatever they lie in.
struct SSampleFormat {
  std::string strName; ///< as messages call it
  uint32_t nBitDepth = 8;

  uint32_t GetBytesPerSample() const { return nBitDepth > 8 ? 2 : 1; }
  uint32_t GetMaximum() const { return (1U << nBitDepth) - 1; }
};

/// All frames of a recording. All lie alike.
struct SRecordedFrames {
  SLayout stLayout;
  std::string strStatedFormat;                ///< what the first file says of them, as PFNC calls it
  std::vector<std::vector<uint8_t>> listDark; ///< in the order of the file names; at least 2
  std::vector<std::vector<uint8_t>> listBright;
  bool bLeftAligned = false; ///< in the files; the frames here are right-aligned
};

/// Reads the files "dark_*" and "bright_*" of every kind in ifilekind.h.
/// Where all samples are multiples that only left-aligned ones of the format's depth can be, they are shifted.
/// \param stFormat that all samples must have; none: any samples of 8 or 16 bits
Result<SRecordedFrames> LoadRecordedFrames(const std::string &strFolder, const std::optional<SSampleFormat> &stFormat);

} // namespace ffc::frames
