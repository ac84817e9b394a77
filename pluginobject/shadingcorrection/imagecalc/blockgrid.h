/// \file
/// How an image is cut into blocks.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/blockparam.h"

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
/// \return an EImageCalcStatus
int32_t CheckBlockGrid(const BLOCK_PARAM &stParam);

/// The number of blocks along one side of an image. A strip left over at the end makes a narrower block of
/// its own when it is wider than half a block, else it belongs to no block.
/// \param nImageSide at least 0
/// \param nBlockSide at least 1
template <typename TSide>
constexpr TSide CountBlocks(TSide nImageSide, TSide nBlockSide)
{
  return nImageSide / nBlockSide + (nImageSide % nBlockSide > nBlockSide / 2 ? 1 : 0);
}

/// The place of a block.
/// \param stParam a grid that CheckBlockGrid accepts
/// \param nColumn, nRow below the counts of CountBlocks
SBlockRect GetBlockRect(const BLOCK_PARAM &stParam, int32_t nColumn, int32_t nRow);
