#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"

#include "pluginobject/shadingcorrection/imagecalc/blockgrid.h"
#include "pluginobject/shadingcorrection/imagecalc/blocksums.h"
#include "pluginobject/shadingcorrection/imagecalc/pixeltype.h"

namespace {

template <typename TPixel>
SPixelBlock<TPixel> GetBlock(const void *pImage, const BLOCK_PARAM &stParam, int32_t nColumn, int32_t nRow)
{
  const SBlockRect stRect = GetBlockRect(stParam, nColumn, nRow);
  const int64_t nStart = static_cast<int64_t>(stRect.nTop) * stParam.nWidth + stRect.nLeft;
  return {static_cast<const TPixel *>(pImage) + nStart, static_cast<uint64_t>(stParam.nWidth),
          static_cast<uint64_t>(stRect.nWidth), static_cast<uint64_t>(stRect.nHeight)};
}

template <typename TPixel>
void WriteBlockMeans(const SPixelBlock<TPixel> &stBlock, int32_t nBayerType, double *pMeans)
{
  if (nBayerType == BAYER_TYPE_MONO) {
    *pMeans = ComputeMean(stBlock);
  } else {
    ComputeColourMeans(stBlock, nBayerType, pMeans);
  }
}

} // namespace

void ComputeBlockMeans(const void *pImage, int32_t nBitDepth, const BLOCK_PARAM &stParam, double *pMeans)
{
  const int32_t nColumns = CountBlocks(stParam.nWidth, stParam.nBlockWidth);
  const int32_t nRows = CountBlocks(stParam.nHeight, stParam.nBlockHeight);
  WithPixelType(nBitDepth, [&](auto pixel) {
    double *pOut = pMeans;
    for (int32_t nRow = 0; nRow < nRows; ++nRow) {
      for (int32_t nColumn = 0; nColumn < nColumns; ++nColumn) {
        WriteBlockMeans(GetBlock<decltype(pixel)>(pImage, stParam, nColumn, nRow), stParam.nBayerType, pOut);
        pOut += GetMeansPerBlock(stParam.nBayerType);
      }
    }
  });
}

double ComputeImageMean(const void *pImage, int32_t nBitDepth, int32_t nWidth, int32_t nHeight)
{
  double dMean = 0.0;
  WithPixelType(nBitDepth, [&](auto pixel) {
    const auto nStride = static_cast<uint64_t>(nWidth);
    dMean = ComputeMean(SPixelBlock<decltype(pixel)>{static_cast<const decltype(pixel) *>(pImage), nStride, nStride,
                                                     static_cast<uint64_t>(nHeight)});
  });
  return dMean;
}
