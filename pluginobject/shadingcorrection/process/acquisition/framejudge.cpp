#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"

#include <algorithm>
#include <limits>

#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

BLOCK_PARAM MakeBlockParam(const SFrameFormat &stFormat, const SBlockGrid &stGrid)
{
  const auto toSide = [](int64_t nSide) {
    using Limits = std::numeric_limits<int32_t>;
    return static_cast<int32_t>(std::clamp<int64_t>(nSide, Limits::min(), Limits::max()));
  };
  return {toSide(stFormat.nWidth), toSide(stFormat.nHeight), toSide(stGrid.nBlockWidth), toSide(stGrid.nBlockHeight),
          stGrid.nBayerType};
}

int32_t MeasureBlockMeans(const CFrameBuffer &frame, const SFrameFormat &stFormat, const SBlockGrid &stGrid,
                          SBlockMeanRange &stRange)
{
  const BLOCK_PARAM stParam = MakeBlockParam(stFormat, stGrid);
  const int32_t nGridStatus = MapCalcStatus(CImageCalc().CheckBlockParam(stParam));
  if (nGridStatus != PLUGIN_STATUS_SUCCESS) {
    return nGridStatus;
  }
  // A format of unknown depth is refused below, before a pixel is read.
  if (stFormat.GetBitDepth() > 0 && !stFormat.FitsInto(frame.GetSize())) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
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

int32_t MeasureEightBitMeans(const CFrameBuffer &frame, const SFrameFormat &stFormat, const SBlockGrid &stGrid,
                             SBlockMeanRange &stRange)
{
  SBlockMeanRange stMeasured;
  const int32_t nStatus = MeasureBlockMeans(frame, stFormat, stGrid, stMeasured);
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    stRange.dMax = ToEightBitScale(stMeasured.dMax, stFormat.GetBitDepth());
    stRange.dMin = ToEightBitScale(stMeasured.dMin, stFormat.GetBitDepth());
  }
  return nStatus;
}

} // namespace ffc::process
