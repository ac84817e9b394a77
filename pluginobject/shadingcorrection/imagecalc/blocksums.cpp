#include "pluginobject/shadingcorrection/imagecalc/blocksums.h"

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
