/// \file
/// Image statistics beneath every correction process.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/blockparam.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"

/// Block means, frame averages, extremes, image mean and smoothing of raw frames.
///
/// Images are tightly packed, row by row: one byte per pixel when the bit depth is 8, else one aligned
/// 16-bit word per pixel, the value right-aligned. All buffers stay the caller's.
///
/// Every operation returns a status of calcstatus.h and leaves its outputs untouched when a test before the
/// computation fails; tests run in the order in which each operation names them. Holds no state, so every
/// operation may run on any thread. None throws.
class CImageCalc {
public:
  virtual ~CImageCalc();

  /// Checks a block grid. The first failing test decides: a side above 100000, then an image side below 32
  /// or a block side below 8 (both -102); then a block larger than the image, then an odd side (both -101).
  [[nodiscard]] int32_t CheckBlockParam(BLOCK_PARAM stParam) const noexcept;

  /// The size of a block grid. A strip left over at the right or bottom makes a narrower block of its own
  /// when it is wider than half a block, else it belongs to no block.
  /// \return -101 for a missing output, else the status of CheckBlockParam
  [[nodiscard]] int32_t GetBlockCount(BLOCK_PARAM stParam, int32_t *pnColumns, int32_t *pnRows) const noexcept;

  /// Mean grey of each block, row by row: one double per block for a mono image, else three (R, G, B).
  /// \param pMeans columns x rows doubles, three times that when the Bayer type is not 0
  /// \return -101 for a missing image or output, -102 for a bit depth outside 8 to 16, else the status of
  ///         CheckBlockParam
  [[nodiscard]] int32_t CalcBlockMeans(const void *pImage, int32_t nBitDepth, BLOCK_PARAM stParam,
                                       double *pMeans) const noexcept;

  /// Adds a frame to the sums, which are not guarded against overflow (they wrap round).
  /// \return -101 for a missing buffer, -102 for a bit depth outside 8 to 16 or a pixel count below 1
  [[nodiscard]] int32_t AccumulateFrame(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount,
                                        uint32_t *pAccumulator) const noexcept;

  /// Writes the averaged frame: each sum divided by the frame count, truncated.
  /// \return -101 for a missing buffer, -102 for a bit depth outside 8 to 16, a pixel or a frame count
  ///         below 1
  [[nodiscard]] int32_t DivideFrame(const uint32_t *pAccumulator, int64_t nPixelCount, int32_t nFrameCount,
                                    int32_t nBitDepth, void *pFrame) const noexcept;

  /// The mean of all pixels.
  /// \return -101 for a missing image or output, -102 for a bit depth outside 8 to 16 or a side below 1
  [[nodiscard]] int32_t CalcImageMean(const void *pImage, int32_t nBitDepth, int32_t nWidth, int32_t nHeight,
                                      double *pdMean) const noexcept;

  /// The extremes of an array.
  /// \return -101 for a missing array or output or a count below 1
  [[nodiscard]] int32_t GetMaxMin(const double *pValues, int64_t nCount, double *pdMax, double *pdMin) const noexcept;

  /// The extremes of all block means, all colours together.
  /// \return the status of CheckBlockParam; -103 when there is no memory; else as CalcBlockMeans and GetMaxMin
  [[nodiscard]] int32_t GetBlockMeanMaxMin(const void *pImage, int32_t nBitDepth, BLOCK_PARAM stParam, double *pdMax,
                                           double *pdMin) const noexcept;

  /// Smooths with a 3x3 box over immediate neighbours. A border of 1 pixel, of 2 for a Bayer image, is
  /// copied unchanged.
  /// \param nBitDepth 8 for bytes, anything else for words; its range is not checked
  /// \param pDestination must not overlap pSource
  /// \return -101 for a missing buffer, -102 for a side below 5
  [[nodiscard]] int32_t SmoothImage(const void *pSource, void *pDestination, int32_t nBitDepth, int32_t nWidth,
                                    int32_t nHeight, bool bBayer) const noexcept;
};
