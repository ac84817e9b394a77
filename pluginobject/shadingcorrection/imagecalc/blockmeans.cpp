#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"

#include "pluginobject/shadingcorrection/imagecalc/blockgrid.h"
#include "pluginobject/shadingcorrection/imagecalc/blocksums.h"

namespace {

constexpr int32_t BYTE_BIT_DEPTH = 8;

SBlockRow GetBlockRow(const void *pImage, bool bWords, const BLOCK_PARAM &stParam, int32_t nRow)
{
  const int32_t nLastColumn = CountBlocks(stParam.nWidth, stParam.nBlockWidth) - 1;
  const SBlockRect stLast = GetBlockRect(stParam, nLastColumn, nRow);
  const auto nStride = static_cast<std::size_t>(stParam.nWidth);
  const std::size_t nStart = static_cast<std::size_t>(stLast.nTop) * nStride * (bWords ? 2 : 1);
  return {static_cast<const unsigned char *>(pImage) + nStart, nStride, static_cast<std::size_t>(stLast.nHeight),
          static_cast<std::size_t>(stLast.nLeft + stLast.nWidth), static_cast<std::size_t>(stParam.nBlockWidth)};
}

} // namespace

void ComputeBlockMeans(const void *pImage, int32_t nBitDepth, const BLOCK_PARAM &stParam, double *pMeans)
{
  const bool bWords = nBitDepth != BYTE_BIT_DEPTH;
  const int32_t nRows = CountBlocks(stParam.nHeight, stParam.nBlockHeight);
  const int64_t nMeansPerRow =
    int64_t{CountBlocks(stParam.nWidth, stParam.nBlockWidth)} * GetMeansPerBlock(stParam.nBayerType);
  for (int32_t nRow = 0; nRow < nRows; ++nRow, pMeans += nMeansPerRow) {
    const SBlockRow stRow = GetBlockRow(pImage, bWords, stParam, nRow);
    if (stParam.nBayerType == BAYER_TYPE_MONO) {
      ComputeGreyMeans(stRow, bWords, pMeans);
    } else {
      ComputeColourMeans(stRow, bWords, stParam.nBayerType, pMeans);
    }
  }
}

double ComputeImageMean(const void *pImage, int32_t nBitDepth, int32_t nWidth, int32_t nHeight)
{
  const auto nColumns = static_cast<std::size_t>(nWidth);
  double dMean = 0.0;
  ComputeGreyMeans({pImage, nColumns, static_cast<std::size_t>(nHeight), nColumns, nColumns},
                   nBitDepth != BYTE_BIT_DEPTH, &dMean);
  return dMean;
}
