#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"

#include "pluginobject/statuscode.h"

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
  return m_accumulator.Average(nFrameCount, stFormat, m_average);
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
