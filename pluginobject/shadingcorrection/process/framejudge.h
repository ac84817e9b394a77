/// \file
/// How bright and how even a frame is.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/process/framebuffer.h"
#include "pluginobject/shadingcorrection/process/frameformat.h"

/// Largest and smallest block mean of a frame.
struct SBlockMeanRange {
  double dMax = 0.0;
  double dMin = 0.0;
};

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
