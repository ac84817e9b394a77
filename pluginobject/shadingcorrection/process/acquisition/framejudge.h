/// \file
/// How bright and how even a frame is.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/blockparam.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

namespace ffc::process {

/// Largest and smallest block mean of a frame.
struct SBlockMeanRange {
  double dMax = 0.0;
  double dMin = 0.0;

  /// Whether a frame with this range, on an 8-bit scale, is dark and even enough for a dark reference: at
  /// most 20.0, and less than 5.0 between the blocks. The dialog warns of a difference above 5.0: at exactly 5.0 a
  /// frame is not used and the user is not warned. The two limits differ on purpose.
  bool IsDark() const { return dMax <= 20.0 && dMax - dMin < 5.0; }
};

/// How frames are cut into blocks.
struct SBlockGrid {
  int64_t nBlockWidth = 0;  ///< pixels
  int64_t nBlockHeight = 0; ///< pixels
  int32_t nBayerType = imagecalc::BAYER_TYPE_MONO;
};

/// The record of a frame's blocks. Sides beyond 31 bits become the largest or smallest number, which the image
/// computations refuse.
BLOCK_PARAM MakeBlockParam(const SFrameFormat &stFormat, const SBlockGrid &stGrid);

/// Measures a frame by the means of its blocks.
/// \param stRange written on success, in the frame's own grey values
/// \return 0; -1012 for a frame smaller than its format says; else a mapped status of the image statistics
[[nodiscard]] int32_t MeasureBlockMeans(const CFrameBuffer &frame, const SFrameFormat &stFormat,
                                        const SBlockGrid &stGrid, SBlockMeanRange &stRange);

/// Brings a grey value to an 8-bit scale: truncated, then shifted right by (bit depth - 8).
/// \param nBitDepth 8 to 16
double ToEightBitScale(double dGray, int32_t nBitDepth);

/// Measures a frame and brings both extremes to an 8-bit scale.
[[nodiscard]] int32_t MeasureEightBitMeans(const CFrameBuffer &frame, const SFrameFormat &stFormat,
                                           const SBlockGrid &stGrid, SBlockMeanRange &stRange);

} // namespace ffc::process
