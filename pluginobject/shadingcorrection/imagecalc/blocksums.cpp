#include "pluginobject/shadingcorrection/imagecalc/blocksums.h"

#include <algorithm>

#include "pluginobject/shadingcorrection/imagecalc/bayertype.h"

namespace {

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

} // namespace

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
