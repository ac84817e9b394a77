/// \file
/// How bright and how even a frame is.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/blockparam.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

/// Largest and smallest block mean of a frame.
struct SBlockMeanRange {
  double dMax = 0.0;
  double dMin = 0.0;

  /// Whether a frame with this range, on an 8-bit scale, is dark and even enough for a dark reference: at
  /// most 20.0, and less than 5.0 between the blocks.
  bool IsDark() const { return dMax <= 20.0 && dMax - dMin < 5.0; }
};

/// Geometry of the blocks of a frame. Sides beyond 31 bits become the largest or smallest number, which the
/// image computations refuse.
/// \param nBayerType 0 mono, 1 to 4 as in imagecalc/blockparam.h
BLOCK_PARAM MakeBlockParam(const SFrameFormat &stFormat, int64_t nBlockWidth, int64_t nBlockHeight, int32_t nBayerType);

/// Measures a frame by the means of its blocks.
/// \param nBlockWidth, nBlockHeight pixels
/// \param nBayerType 0 mono, 1 to 4 as in imagecalc/blockparam.h
/// \param stRange written on success, in the frame's own grey values
/// \return 0; -1012 for a frame smaller than its format says; else a mapped status of the image statistics
int32_t MeasureBlockMeans(const CFrameBuffer &frame, const SFrameFormat &stFormat, int64_t nBlockWidth,
                          int64_t nBlockHeight, int32_t nBayerType, SBlockMeanRange &stRange);

/// Brings a grey value to an 8-bit scale: truncated, then shifted right by (bit depth - 8).
/// \param nBitDepth 8 to 16
double ToEightBitScale(double dGray, int32_t nBitDepth);

/// Measures a frame and brings both extremes to an 8-bit scale.
int32_t MeasureEightBitMeans(const CFrameBuffer &frame, const SFrameFormat &stFormat, int64_t nBlockWidth,
                             int64_t nBlockHeight, int32_t nBayerType, SBlockMeanRange &stRange);
