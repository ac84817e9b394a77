#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"

#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/arrayallocation.h"
#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"
#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"
#include "pluginobject/shadingcorrection/imagecalc/imageview.h"
#include "pluginobject/shadingcorrection/imagecalc/smooth.h"

using namespace ffc::imagecalc;

namespace {

constexpr int32_t MIN_SMOOTH_SIDE = 5;

} // namespace

CImageCalc::~CImageCalc() = default;

int32_t CImageCalc::CheckBlockParam(BLOCK_PARAM stParam) const noexcept
{
  return CheckBlockGrid(stParam);
}

int32_t CImageCalc::GetBlockCount(BLOCK_PARAM stParam, int32_t *pnColumns, int32_t *pnRows) const noexcept
{
  if (pnColumns == nullptr || pnRows == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  const int32_t nStatus = CheckBlockParam(stParam);
  if (nStatus == IMAGECALC_STATUS_SUCCESS) {
    *pnColumns = CountBlocks(stParam.nWidth, stParam.nBlockWidth);
    *pnRows = CountBlocks(stParam.nHeight, stParam.nBlockHeight);
  }
  return nStatus;
}

int32_t CImageCalc::CalcBlockMeans(const void *pImage, int32_t nBitDepth, BLOCK_PARAM stParam,
                                   double *pMeans) const noexcept
{
  if (pImage == nullptr || pMeans == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  if (!IsBitDepthInRange(nBitDepth)) {
    return IMAGECALC_STATUS_OUT_OF_RANGE;
  }
  const int32_t nStatus = CheckBlockParam(stParam);
  if (nStatus == IMAGECALC_STATUS_SUCCESS) {
    ComputeBlockMeans(pImage, nBitDepth, stParam, pMeans);
  }
  return nStatus;
}

int32_t CImageCalc::AccumulateFrame(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount,
                                    uint32_t *pAccumulator) const noexcept
{
  const int32_t nStatus = CheckSum(pFrame, pAccumulator, nBitDepth, nPixelCount);
  if (nStatus == IMAGECALC_STATUS_SUCCESS) {
    AddFrame(pFrame, nBitDepth, nPixelCount, pAccumulator);
  }
  return nStatus;
}

int32_t CImageCalc::DivideFrame(const uint32_t *pAccumulator, int64_t nPixelCount, int32_t nFrameCount,
                                int32_t nBitDepth, void *pFrame) const noexcept
{
  const int32_t nStatus = CheckSum(pFrame, pAccumulator, nBitDepth, nPixelCount, nFrameCount);
  if (nStatus == IMAGECALC_STATUS_SUCCESS) {
    AverageFrames(pAccumulator, nPixelCount, static_cast<uint32_t>(nFrameCount), nBitDepth, pFrame);
  }
  return nStatus;
}

int32_t CImageCalc::CalcImageMean(const void *pImage, int32_t nBitDepth, int32_t nWidth, int32_t nHeight,
                                  double *pdMean) const noexcept
{
  if (pImage == nullptr || pdMean == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  if (!IsBitDepthInRange(nBitDepth) || nWidth < 1 || nHeight < 1) {
    return IMAGECALC_STATUS_OUT_OF_RANGE;
  }
  *pdMean = ComputeImageMean({pImage, nWidth, nHeight, nBitDepth});
  return IMAGECALC_STATUS_SUCCESS;
}

int32_t CImageCalc::GetMaxMin(const double *pValues, int64_t nCount, double *pdMax, double *pdMin) const noexcept
{
  if (pValues == nullptr || pdMax == nullptr || pdMin == nullptr || nCount < 1) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  double dMax = pValues[0];
  double dMin = pValues[0];
  for (int64_t i = 1; i < nCount; ++i) {
    dMax = pValues[i] > dMax ? pValues[i] : dMax;
    dMin = pValues[i] < dMin ? pValues[i] : dMin;
  }
  *pdMax = dMax;
  *pdMin = dMin;
  return IMAGECALC_STATUS_SUCCESS;
}

int32_t CImageCalc::GetBlockMeanMaxMin(const void *pImage, int32_t nBitDepth, BLOCK_PARAM stParam, double *pdMax,
                                       double *pdMin) const noexcept
{
  int32_t nColumns = 0;
  int32_t nRows = 0;
  int32_t nStatus = GetBlockCount(stParam, &nColumns, &nRows);
  if (nStatus != IMAGECALC_STATUS_SUCCESS) {
    return nStatus;
  }
  const int64_t nCount = int64_t{nColumns} * nRows * GetMeansPerBlock(stParam.nBayerType);
  const std::unique_ptr<double[]> pMeans = AllocateArray<double>({static_cast<uint64_t>(nCount)});
  if (pMeans == nullptr) {
    return IMAGECALC_STATUS_OUT_OF_MEMORY;
  }
  nStatus = CalcBlockMeans(pImage, nBitDepth, stParam, pMeans.get());
  if (nStatus != IMAGECALC_STATUS_SUCCESS) {
    return nStatus;
  }
  return GetMaxMin(pMeans.get(), nCount, pdMax, pdMin);
}

int32_t CImageCalc::SmoothImage(const void *pSource, void *pDestination, int32_t nBitDepth, int32_t nWidth,
                                int32_t nHeight, bool bBayer) const noexcept
{
  if (pSource == nullptr || pDestination == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  if (nWidth < MIN_SMOOTH_SIDE || nHeight < MIN_SMOOTH_SIDE) {
    return IMAGECALC_STATUS_OUT_OF_RANGE;
  }
  SmoothPixels({pSource, nWidth, nHeight, nBitDepth}, pDestination, bBayer ? 2 : 1);
  return IMAGECALC_STATUS_SUCCESS;
}
