#include "pluginobject/shadingcorrection/process/acquisition/frameaccumulator.h"

#include <limits>

#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"
#include "pluginobject/shadingcorrection/process/calcstatusmapping.h"
#include "pluginobject/statuscode.h"

bool CFrameAccumulator::Allocate(uint64_t nFrameSize)
{
  constexpr uint64_t LARGEST = std::numeric_limits<uint64_t>::max() / sizeof(uint32_t);
  Release();
  return nFrameSize <= LARGEST && m_sums.Allocate(nFrameSize * sizeof(uint32_t));
}

void CFrameAccumulator::Release()
{
  m_sums.Release();
}

bool CFrameAccumulator::Holds(const SFrameFormat &stFormat) const
{
  return stFormat.GetPixelCount() <= m_sums.GetSize() / sizeof(uint32_t);
}

int32_t CFrameAccumulator::Add(const CFrameBuffer &frame, const SFrameFormat &stFormat)
{
  if (!Holds(stFormat) || !stFormat.FitsInto(frame.GetSize())) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
  return MapCalcStatus(CImageCalc().AccumulateFrame(frame.GetData(), stFormat.GetBitDepth(),
                                                    static_cast<int64_t>(stFormat.GetPixelCount()),
                                                    reinterpret_cast<uint32_t *>(m_sums.GetData())));
}

int32_t CFrameAccumulator::Average(uint32_t nFrameCount, const SFrameFormat &stFormat, CFrameBuffer &average) const
{
  if (!Holds(stFormat) || !stFormat.FitsInto(average.GetSize())) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
  return MapCalcStatus(CImageCalc().DivideFrame(
    reinterpret_cast<const uint32_t *>(m_sums.GetData()), static_cast<int64_t>(stFormat.GetPixelCount()),
    static_cast<int32_t>(nFrameCount), stFormat.GetBitDepth(), average.GetData()));
}
