#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"

#include <algorithm>

#include "pluginobject/shadingcorrection/imagecalc/bayertype.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"

namespace ffc::imagecalc {

namespace {

constexpr int32_t MAX_SIDE = 100000;
constexpr int32_t MIN_IMAGE_SIDE = 32;
constexpr int32_t MIN_BLOCK_SIDE = 8;

bool IsOdd(int32_t nValue)
{
  return nValue % 2 != 0;
}

int32_t GetBlockSide(int32_t nImageSide, int32_t nBlockSide, int32_t nStart)
{
  return nImageSide - nStart < nBlockSide ? nImageSide % nBlockSide : nBlockSide;
}

constexpr std::size_t COLOURS = 3;

std::size_t CountBlocksOf(const SBlockRow &stRow)
{
  return (stRow.nColumns + stRow.nBlockWidth - 1) / stRow.nBlockWidth;
}

double CountPixelsOf(const SBlockRow &stRow, std::size_t nBlock)
{
  const std::size_t nWidth = std::min(stRow.nBlockWidth, stRow.nColumns - nBlock * stRow.nBlockWidth);
  return static_cast<double>(nWidth) * static_cast<double>(stRow.nRows);
}

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

int32_t CheckBlockGrid(const BLOCK_PARAM &stParam)
{
  if (stParam.nHeight > MAX_SIDE || stParam.nWidth > MAX_SIDE || stParam.nBlockWidth > MAX_SIDE ||
      stParam.nBlockHeight > MAX_SIDE) {
    return IMAGECALC_STATUS_OUT_OF_RANGE;
  }
  if (stParam.nHeight < MIN_IMAGE_SIDE || stParam.nWidth < MIN_IMAGE_SIDE || stParam.nBlockWidth < MIN_BLOCK_SIDE ||
      stParam.nBlockHeight < MIN_BLOCK_SIDE) {
    return IMAGECALC_STATUS_OUT_OF_RANGE;
  }
  if (stParam.nWidth < stParam.nBlockWidth || stParam.nHeight < stParam.nBlockHeight) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  if (IsOdd(stParam.nBlockWidth) || IsOdd(stParam.nBlockHeight) || IsOdd(stParam.nWidth) || IsOdd(stParam.nHeight)) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  return IMAGECALC_STATUS_SUCCESS;
}

SBlockRect GetBlockRect(const BLOCK_PARAM &stParam, int32_t nColumn, int32_t nRow)
{
  const int32_t nLeft = nColumn * stParam.nBlockWidth;
  const int32_t nTop = nRow * stParam.nBlockHeight;
  return {nLeft, nTop, GetBlockSide(stParam.nWidth, stParam.nBlockWidth, nLeft),
          GetBlockSide(stParam.nHeight, stParam.nBlockHeight, nTop)};
}

void ComputeGreyMeans(const SBlockRow &stRow, bool bWords, double *pMeans)
{
  const std::size_t nBlocks = CountBlocksOf(stRow);
  std::fill_n(pMeans, nBlocks, 0.0);
  GetImageKernels().afnSumBlocks[bWords](stRow, pMeans);
  for (std::size_t nBlock = 0; nBlock < nBlocks; ++nBlock) {
    pMeans[nBlock] /= CountPixelsOf(stRow, nBlock);
  }
}

void ComputeColourMeans(const SBlockRow &stRow, bool bWords, int32_t nBayerType, double *pMeans)
{
  const std::size_t nBlocks = CountBlocksOf(stRow);
  std::fill_n(pMeans, nBlocks * COLOURS, 0.0);
  const SBayerLayout *const pLayout = GetBayerLayout(nBayerType);
  if (pLayout == nullptr) {
    return;
  }
  uint8_t anColour[BAYER_PLACE_COUNT];
  anColour[pLayout->eRed] = 0;
  anColour[pLayout->eGreenTop] = 1;
  anColour[pLayout->eGreenBottom] = 1;
  anColour[pLayout->eBlue] = 2;
  GetImageKernels().afnSumCells[bWords](stRow, anColour, pMeans);
  for (std::size_t nBlock = 0; nBlock < nBlocks; ++nBlock, pMeans += COLOURS) {
    const double dPixels = CountPixelsOf(stRow, nBlock);
    pMeans[0] = 4.0 * pMeans[0] / dPixels;
    pMeans[1] = 2.0 * pMeans[1] / dPixels;
    pMeans[2] = 4.0 * pMeans[2] / dPixels;
  }
}

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

double ComputeImageMean(const SImageView &stImage)
{
  const auto nColumns = static_cast<std::size_t>(stImage.nWidth);
  double dMean = 0.0;
  ComputeGreyMeans({stImage.pPixels, nColumns, static_cast<std::size_t>(stImage.nHeight), nColumns, nColumns},
                   stImage.HasWords(), &dMean);
  return dMean;
}

} // namespace ffc::imagecalc
