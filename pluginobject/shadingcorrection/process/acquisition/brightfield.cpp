#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"

#include <limits>

#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

using imagecalc::CFrameSums;

bool CFrameAccumulator::Allocate(uint64_t nFrameSize)
{
  constexpr uint64_t LARGEST = std::numeric_limits<uint64_t>::max() / sizeof(uint32_t);
  Release();
  const bool bAllocated = nFrameSize <= LARGEST && m_memory.Allocate(nFrameSize * sizeof(uint32_t));
  m_sums = CFrameSums(m_memory.GetData());
  return bAllocated;
}

void CFrameAccumulator::Release()
{
  m_sums = CFrameSums();
  m_memory.Release();
}

bool CFrameAccumulator::Holds(const SFrameFormat &stFormat) const
{
  return stFormat.GetPixelCount() <= m_memory.GetSize() / sizeof(uint32_t);
}

int32_t CFrameAccumulator::Add(const CFrameBuffer &frame, const SFrameFormat &stFormat)
{
  if (!Holds(stFormat) || !stFormat.FitsInto(frame.GetSize())) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
  return MapCalcStatus(
    m_sums.Add(frame.GetData(), stFormat.GetBitDepth(), static_cast<int64_t>(stFormat.GetPixelCount())));
}

int32_t CFrameAccumulator::Average(uint32_t nFrameCount, const SFrameFormat &stFormat, CFrameBuffer &average)
{
  if (!Holds(stFormat) || !stFormat.FitsInto(average.GetSize())) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
  return MapCalcStatus(m_sums.Average(static_cast<int32_t>(nFrameCount), stFormat.GetBitDepth(),
                                      static_cast<int64_t>(stFormat.GetPixelCount()), average.GetData()));
}

int32_t CBrightField::Allocate(uint64_t nSize)
{
  const bool bAllocated =
    m_average.Allocate(nSize) && m_accumulator.Allocate(nSize) && m_exchange.AllocateBuffer(nSize);
  return bAllocated ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_OUT_OF_MEMORY;
}

int32_t CBrightField::Add(const SFrameFormat &stFormat)
{
  return m_exchange.UseFrame([&](const CFrameBuffer &frame) { return m_accumulator.Add(frame, stFormat); });
}

int32_t CBrightField::Average(uint32_t nFrameCount, const SFrameFormat &stFormat)
{
  // Memory that was written before: the system need not find and zero more.
  const uint64_t nWritten = m_exchange.SwapBuffer(m_average);
  const int32_t nStatus = m_accumulator.Average(nFrameCount, stFormat, m_average);
  m_average.ZeroBetween(stFormat.GetPixelCount() * (stFormat.GetBitDepth() == 8 ? 1 : 2), nWritten);
  return nStatus;
}

void CBrightField::EndAcquisition()
{
  m_accumulator.Release();
  m_exchange.ReleaseBuffer();
}

int32_t CBrightField::KeepOnSuccess(int32_t nStatus)
{
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    Drop();
  }
  return nStatus;
}

} // namespace ffc::process
