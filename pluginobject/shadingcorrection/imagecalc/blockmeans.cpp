#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"

#include "pluginobject/shadingcorrection/imagecalc/blockgrid.h"
#include "pluginobject/shadingcorrection/imagecalc/pixeltype.h"

namespace {

// The sums of the four places of a block's cells.
struct SCellSums {
  uint64_t anSum[BAYER_PLACE_COUNT] = {};
};

template <typename TPixel>
const TPixel *GetRow(const TPixel *pImage, int32_t nWidth, int32_t nRow)
{
  return pImage + static_cast<int64_t>(nRow) * nWidth;
}

template <typename TPixel>
uint64_t SumPixels(const TPixel *pImage, int32_t nImageWidth, const SBlockRect &stBlock)
{
  uint64_t nSum = 0;
  for (int32_t y = 0; y < stBlock.nHeight; ++y) {
    const TPixel *const pRow = GetRow(pImage, nImageWidth, stBlock.nTop + y) + stBlock.nLeft;
    for (int32_t x = 0; x < stBlock.nWidth; ++x) {
      nSum += pRow[x];
    }
  }
  return nSum;
}

// Sides of blocks are even, the narrow ones at the edge too, so no cell is cut.
template <typename TPixel>
SCellSums SumCells(const TPixel *pImage, int32_t nImageWidth, const SBlockRect &stBlock)
{
  SCellSums stSums;
  for (int32_t y = 0; y < stBlock.nHeight; y += 2) {
    const TPixel *const pTop = GetRow(pImage, nImageWidth, stBlock.nTop + y) + stBlock.nLeft;
    const TPixel *const pBottom = pTop + nImageWidth;
    for (int32_t x = 0; x < stBlock.nWidth; x += 2) {
      stSums.anSum[BAYER_PLACE_TOP_LEFT] += pTop[x];
      stSums.anSum[BAYER_PLACE_TOP_RIGHT] += pTop[x + 1];
      stSums.anSum[BAYER_PLACE_BOTTOM_LEFT] += pBottom[x];
      stSums.anSum[BAYER_PLACE_BOTTOM_RIGHT] += pBottom[x + 1];
    }
  }
  return stSums;
}

void WriteColourMeans(const SCellSums &stSums, double dPixels, int32_t nBayerType, double *pMeans)
{
  const SBayerLayout *const pLayout = GetBayerLayout(nBayerType);
  if (pLayout == nullptr) {
    pMeans[0] = pMeans[1] = pMeans[2] = 0.0;
    return;
  }
  const uint64_t nGreen = stSums.anSum[pLayout->eGreenTop] + stSums.anSum[pLayout->eGreenBottom];
  pMeans[0] = 4.0 * static_cast<double>(stSums.anSum[pLayout->eRed]) / dPixels;
  pMeans[1] = 2.0 * static_cast<double>(nGreen) / dPixels;
  pMeans[2] = 4.0 * static_cast<double>(stSums.anSum[pLayout->eBlue]) / dPixels;
}

template <typename TPixel>
void WriteBlockMeans(const TPixel *pImage, const BLOCK_PARAM &stParam, const SBlockRect &stBlock, double *pMeans)
{
  const double dPixels = static_cast<double>(stBlock.nWidth) * static_cast<double>(stBlock.nHeight);
  if (stParam.nBayerType == BAYER_TYPE_MONO) {
    *pMeans = static_cast<double>(SumPixels(pImage, stParam.nWidth, stBlock)) / dPixels;
  } else {
    WriteColourMeans(SumCells(pImage, stParam.nWidth, stBlock), dPixels, stParam.nBayerType, pMeans);
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
        const SBlockRect stBlock = GetBlockRect(stParam, nColumn, nRow);
        WriteBlockMeans(static_cast<const decltype(pixel) *>(pImage), stParam, stBlock, pOut);
        pOut += GetMeansPerBlock(stParam.nBayerType);
      }
    }
  });
}

double ComputeImageMean(const void *pImage, int32_t nBitDepth, int32_t nWidth, int32_t nHeight)
{
  uint64_t nSum = 0;
  WithPixelType(nBitDepth, [&](auto pixel) {
    nSum = SumPixels(static_cast<const decltype(pixel) *>(pImage), nWidth, SBlockRect{0, 0, nWidth, nHeight});
  });
  return static_cast<double>(nSum) / (static_cast<double>(nWidth) * static_cast<double>(nHeight));
}
