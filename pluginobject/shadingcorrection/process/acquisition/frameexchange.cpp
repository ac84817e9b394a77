#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
#include <utility>

#include "pluginobject/statuscode.h"

namespace ffc::process {

using platform::CCriticalSection;
using platform::WAIT_RESULT_SIGNALLED;
using platform::WAIT_RESULT_TIMEOUT;

uint32_t GetFrameTimeout(float fExposureTime)
{
  constexpr uint32_t LONGEST = 0xFFFFFFFE;
  const float fTimeout = fExposureTime / 1000.0F + 1000.0F;
  if (!(fTimeout > 0.0F)) {
    return 0;
  }
  return fTimeout >= static_cast<float>(LONGEST) ? LONGEST : static_cast<uint32_t>(fTimeout);
}

bool CFrameExchange::AllocateBuffer(uint64_t nSize)
{
  // The host counts the bytes of a frame in 32 bits: a larger one never comes.
  constexpr uint64_t LARGEST = std::numeric_limits<uint32_t>::max();
  // Made outside the lock, so that the frame thread never waits for an allocation.
  CFrameBuffer buffer;
  const bool bAllocated = nSize <= LARGEST && buffer.Allocate(nSize);
  const std::lock_guard<CCriticalSection> lock(m_lockBuffer);
  m_buffer = std::move(buffer);
  m_nWritten = 0;
  return bAllocated;
}

int32_t CFrameExchange::AllocateFrame(uint64_t nSize, CFrameBuffer &kept)
{
  return kept.Allocate(nSize) && AllocateBuffer(nSize) ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_OUT_OF_MEMORY;
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
  m_buffer.ZeroBetween(0, m_nWritten);
  m_nWritten = 0;
}

uint64_t CFrameExchange::SwapBuffer(CFrameBuffer &other)
{
  const std::lock_guard<CCriticalSection> lock(m_lockBuffer);
  std::swap(m_buffer, other);
  return std::exchange(m_nWritten, 0);
}

void CFrameExchange::BeginRequests()
{
  WithdrawRequest();
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

int32_t CFrameExchange::TakeFrames(uint32_t nTimeout, uint32_t nCount, const std::function<int32_t(uint32_t)> &fnUse)
{
  BeginRequests();
  for (uint32_t nFrame = 0; nFrame < nCount; ++nFrame) {
    int32_t nStatus = WaitFrame(nTimeout);
    if (nStatus == PLUGIN_STATUS_SUCCESS) {
      nStatus = fnUse(nFrame);
    }
    if (nStatus != PLUGIN_STATUS_SUCCESS) {
      return nStatus;
    }
    if (nFrame + 1 < nCount) {
      RequestFrame();
    }
  }
  return PLUGIN_STATUS_SUCCESS;
}

bool CFrameExchange::WaitFrameReady(uint32_t nTimeout)
{
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(nTimeout);
  uint32_t nLeft = nTimeout;
  while (m_eventImageReady.Wait(nLeft) == WAIT_RESULT_SIGNALLED) {
    if (IsInForce(m_nReady)) {
      return true;
    }
    const auto nMilliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    nLeft = static_cast<uint32_t>(std::max<int64_t>(nMilliseconds, 0));
  }
  return false;
}

uint32_t CFrameExchange::PollRequest()
{
  const uint64_t nRequest = m_nPending.exchange(NO_REQUEST);
  if (nRequest == NO_REQUEST) {
    return WAIT_RESULT_TIMEOUT;
  }
  m_nInHand = nRequest;
  return WAIT_RESULT_SIGNALLED;
}

void CFrameExchange::SetFrameReady()
{
  m_nReady = m_nInHand.exchange(NO_REQUEST);
  m_eventImageReady.Set();
}

void CFrameExchange::ReceiveFrame(const void *pFrame, uint32_t nSize)
{
  const std::lock_guard<CCriticalSection> lock(m_lockBuffer);
  if (pFrame != nullptr && m_buffer.IsAllocated() && IsInForce(m_nInHand)) {
    const uint64_t nBytes = std::min<uint64_t>(nSize, m_buffer.GetSize());
    std::memcpy(m_buffer.GetData(), pFrame, nBytes);
    m_nWritten = std::max(m_nWritten, nBytes);
  }
}

} // namespace ffc::process
