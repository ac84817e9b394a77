#include "pluginobject/shadingcorrection/imagecalc/blockgrid.h"

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"

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
