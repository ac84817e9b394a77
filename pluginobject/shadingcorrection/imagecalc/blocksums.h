/// \file
/// Sums and means over one block of an image.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/bayertype.h"

/// A block within an image.
template <typename TPixel>
struct SPixelBlock {
  const TPixel *pPixels; ///< the top left one
  uint64_t nStride;      ///< width of the image, in pixels
  uint64_t nWidth;
  uint64_t nHeight;
};

/// The sums of the four places of a block's 2x2 cells.
struct SCellSums {
  uint64_t anSum[BAYER_PLACE_COUNT] = {};
};

template <typename TPixel>
double CountPixels(const SPixelBlock<TPixel> &stBlock)
{
  return static_cast<double>(stBlock.nWidth) * static_cast<double>(stBlock.nHeight);
}

template <typename TPixel>
uint64_t SumPixels(const SPixelBlock<TPixel> &stBlock)
{
  uint64_t nSum = 0;
  for (uint64_t y = 0; y < stBlock.nHeight; ++y) {
    const TPixel *const pRow = stBlock.pPixels + y * stBlock.nStride;
    for (uint64_t x = 0; x < stBlock.nWidth; ++x) {
      nSum += pRow[x];
    }
  }
  return nSum;
}

/// Only whole cells count: the last row or column of an odd side is left out.
template <typename TPixel>
SCellSums SumCells(const SPixelBlock<TPixel> &stBlock)
{
  SCellSums stSums;
  for (uint64_t y = 0; y + 1 < stBlock.nHeight; y += 2) {
    const TPixel *const pTop = stBlock.pPixels + y * stBlock.nStride;
    const TPixel *const pBottom = pTop + stBlock.nStride;
    for (uint64_t x = 0; x + 1 < stBlock.nWidth; x += 2) {
      stSums.anSum[BAYER_PLACE_TOP_LEFT] += pTop[x];
      stSums.anSum[BAYER_PLACE_TOP_RIGHT] += pTop[x + 1];
      stSums.anSum[BAYER_PLACE_BOTTOM_LEFT] += pBottom[x];
      stSums.anSum[BAYER_PLACE_BOTTOM_RIGHT] += pBottom[x + 1];
    }
  }
  return stSums;
}

/// The means of R, G and B, all zero for a type outside 1 to 4.
/// \param dPixels pixels of the block, of which a quarter is red, a half green, a quarter blue
/// \param pMeans three values
void WriteColourMeans(const SCellSums &stSums, double dPixels, int32_t nBayerType, double *pMeans);

/// The mean of all pixels of a block that is not empty.
template <typename TPixel>
double ComputeMean(const SPixelBlock<TPixel> &stBlock)
{
  return static_cast<double>(SumPixels(stBlock)) / CountPixels(stBlock);
}

/// The means of R, G and B of a block that is not empty; all zero for a type outside 1 to 4, or when the block
/// has no whole cell.
/// \param pMeans three values
template <typename TPixel>
void ComputeColourMeans(const SPixelBlock<TPixel> &stBlock, int32_t nBayerType, double *pMeans)
{
  WriteColourMeans(SumCells(stBlock), CountPixels(stBlock), nBayerType, pMeans);
}
