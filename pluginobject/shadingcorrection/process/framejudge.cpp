#include "pluginobject/shadingcorrection/process/framejudge.h"

#include <limits>

#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"
#include "pluginobject/shadingcorrection/process/calcstatusmapping.h"
#include "pluginobject/statuscode.h"

int32_t MeasureBlockMeans(const CFrameBuffer &frame, const SFrameFormat &stFormat, int64_t nBlockWidth,
                          int64_t nBlockHeight, int32_t nBayerType, SBlockMeanRange &stRange)
{
  constexpr int64_t LARGEST = std::numeric_limits<int32_t>::max();
  if (!stFormat.FitsInto(frame.GetSize()) || nBlockWidth > LARGEST || nBlockHeight > LARGEST) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
  const BLOCK_PARAM stParam = {static_cast<int32_t>(stFormat.nWidth), static_cast<int32_t>(stFormat.nHeight),
                               static_cast<int32_t>(nBlockWidth), static_cast<int32_t>(nBlockHeight), nBayerType};
  SBlockMeanRange stMeasured;
  const int32_t nStatus = MapCalcStatus(CImageCalc().GetBlockMeanMaxMin(frame.GetData(), stFormat.GetBitDepth(),
                                                                        stParam, &stMeasured.dMax, &stMeasured.dMin));
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    stRange = stMeasured;
  }
  return nStatus;
}

double ToEightBitScale(double dGray, int32_t nBitDepth)
{
  return static_cast<double>(static_cast<uint32_t>(dGray) >> (nBitDepth - 8));
}
