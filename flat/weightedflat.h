/// \file
/// A table of the host-side correction out of weighted frames.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "genapi/sensorformat.h"
#include "platform/result.h"
#include "pluginobject/shadingcorrection/process/coefficients/hosttable.h"
#include "reference/weightedreference.h"

namespace ffc::flat {

/// Frames of one size and format, as they came.
struct SFrameSet {
  const genapi::SSensorFormat *pFormat = nullptr;
  uint32_t nWidth = 0; ///< pixels
  uint32_t nHeight = 0;
  std::vector<std::vector<uint8_t>> listFrames;
};

struct SWeightedFlat {
  process::HostTablePtr pTable;
  uint32_t nFrames = 0;     ///< bright ones
  uint32_t nDarkFrames = 0; ///< that were used: a dark field that is too bright is not, as in the dialog
  reference::ENoiseSource eNoise = reference::ENoiseSource::Differences;
  /// Of the bright reference, per cent of its mean less the dark level: the pattern that it leaves in every image. The
  /// dark field and the rounding of the corrected images add theirs.
  double dPlainNoise = 0; ///< of the plain average
  double dNoise = 0;      ///< of the weighted one

  /// How many frames a plain average needs for as little noise.
  double GetWorth() const { return dNoise > 0 ? nFrames * (dPlainNoise / dNoise) * (dPlainNoise / dNoise) : 0; }
};

/// What a table is made of.
struct SFlatFrames {
  std::shared_ptr<const SFrameSet> pBright;
  std::shared_ptr<const SFrameSet> pDark; ///< null, or of another kind than the bright ones: the dark level is 0
  uint32_t nExpectGray = 0;               ///< 0 to 255
  uint32_t nThreads = 1;
};

/// The same as `ffc make --method weighted` of these frames. On any thread.
/// \param bStop looked at between the steps
/// \return why there is none; nothing to show after bStop
Result<SWeightedFlat> MakeWeightedFlat(const SFlatFrames &stFrames, const std::atomic<bool> &bStop);

} // namespace ffc::flat
