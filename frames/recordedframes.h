/// \file
/// Dark and bright frames from a folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "frames/alignment.h"
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
  std::string strStatedFormat;                ///< what the first file says of them, or their values, as PFNC calls it
  std::string strGuess;                       ///< why, as a sentence, where the values had to say it; else empty
  std::vector<std::vector<uint8_t>> listDark; ///< in the order of the file names; none, or at least 2
  std::vector<std::vector<uint8_t>> listBright;
  bool bLeftAligned = false; ///< in the files; the frames here are right-aligned
};

/// Reads the files "dark_*" and "bright_*" of every kind in ifilekind.h.
/// Left-aligned samples are shifted: where somebody states it, and where all are multiples that only left-aligned ones
/// of the format's depth can be. Samples of 16 bits whose depth neither format nor files state get the depth that their
/// values show.
/// \param stFormat that all samples must have; none: any samples of 8 or 16 bits
/// \param eAlignment of samples of 16 bits; none: what the values show
Result<SRecordedFrames> LoadRecordedFrames(const std::string &strFolder, const std::optional<SSampleFormat> &stFormat,
                                           std::optional<EAlignment> eAlignment = std::nullopt);

} // namespace ffc::frames
