#include "pluginobject/shadingcorrection/process/frameexchange.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "pluginobject/statuscode.h"

bool CFrameExchange::AllocateBuffer(uint64_t nSize)
{
  // Made outside the lock, so that the frame thread never waits for an allocation.
  CFrameBuffer buffer;
  const bool bAllocated = buffer.Allocate(nSize);
  const std::lock_guard<CCriticalSection> lock(m_lockBuffer);
  m_buffer = std::move(buffer);
  return bAllocated;
}

void CFrameExchange::ReleaseBuffer()
{
  WithdrawRequest();
  const std::lock_guard<CCriticalSection> lock(m_lockBuffer);
  m_buffer.Release();
}

void CFrameExchange::ZeroBuffer()
{
  const std::lock_guard<CCriticalSection> lock(m_lockBuffer);
  m_buffer.Zero();
}

void CFrameExchange::BeginRequests()
{
  ForgetFrame();
  RequestFrame();
}

int32_t CFrameExchange::WaitFrame(uint32_t nTimeout)
{
  const bool bReady = WaitFrameReady(nTimeout);
  if (m_bStop) {
    return PLUGIN_STATUS_NEED_BAYER_FORMAT;
  }
  return bReady ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_BUFFER_TIMEOUT;
}

void CFrameExchange::ReceiveFrame(const void *pFrame, uint32_t nSize)
{
  const std::lock_guard<CCriticalSection> lock(m_lockBuffer);
  if (pFrame != nullptr && m_buffer.IsAllocated()) {
    std::memcpy(m_buffer.GetData(), pFrame, std::min<uint64_t>(nSize, m_buffer.GetSize()));
  }
}
