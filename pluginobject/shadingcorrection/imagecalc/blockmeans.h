/// \file
/// How an image is cut into blocks, and the means of these and of a whole image. But for the grid, arguments are
/// checked by the caller.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/blockparam.h"
#include "pluginobject/shadingcorrection/imagecalc/imageview.h"
#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

namespace ffc::imagecalc {

/// The place of one block in its image, in pixels.
struct SBlockRect {
  int32_t nLeft;
  int32_t nTop;
  int32_t nWidth;
  int32_t nHeight;
};

/// Checks a grid. The first failing test decides: a side above 100000, then an image side below 32 or a
/// block side below 8 (both out of range); then a block larger than the image, then an odd side (both an
/// invalid argument).
/// \return a status of calcstatus.h
[[nodiscard]] int32_t CheckBlockGrid(const BLOCK_PARAM &stParam);

/// The number of blocks along one side of an image. A strip left over at the end makes a narrower block of
/// its own when it is wider than half a block, else it belongs to no block.
/// \param nImageSide at least 0
/// \param nBlockSide at least 1
template <class TSide>
constexpr TSide CountBlocks(TSide nImageSide, TSide nBlockSide)
{
  return nImageSide / nBlockSide + (nImageSide % nBlockSide > nBlockSide / 2 ? 1 : 0);
}

/// The place of a block.
/// \param stParam a grid that CheckBlockGrid accepts
/// \param nColumn, nRow below the counts of CountBlocks
SBlockRect GetBlockRect(const BLOCK_PARAM &stParam, int32_t nColumn, int32_t nRow);

/// Writes the mean of all pixels of each block.
/// \param stRow at least one pixel
/// \param bWords whether pixels are 16-bit words, else bytes
/// \param pMeans one value for each block
void ComputeGreyMeans(const SBlockRow &stRow, bool bWords, double *pMeans);

/// Writes the means of R, G and B of each block; all zero for a type outside 1 to 4, or when a block has no whole 2x2
/// cell. Only whole cells are summed, but the sums are divided by all of the block's pixels: a quarter of them is red,
/// a half green, a quarter blue.
/// \param stRow blocks of even sides, or of sides of 1
/// \param pMeans three values for each block
void ComputeColourMeans(const SBlockRow &stRow, bool bWords, int32_t nBayerType, double *pMeans);

/// Doubles that each block takes in an array of block means: one for a mono image, three (R, G, B) for
/// every other.
constexpr int32_t GetMeansPerBlock(int32_t nBayerType)
{
  return nBayerType == BAYER_TYPE_MONO ? 1 : 3;
}

/// Writes the means of all blocks, row by row from the top left.
/// \param pImage pixels of the bit depth's type, width x height
/// \param stParam a grid that CheckBlockGrid accepts
/// \param pMeans blocks x GetMeansPerBlock values
void ComputeBlockMeans(const void *pImage, int32_t nBitDepth, const BLOCK_PARAM &stParam, double *pMeans);

/// The mean of all pixels.
/// \param stImage at least one pixel
double ComputeImageMean(const SImageView &stImage);

} // namespace ffc::imagecalc
