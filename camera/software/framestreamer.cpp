#include "camera/software/framestreamer.h"

#include <system_error>
#include <utility>

namespace ffc::camera {

CFrameStreamer::CFrameStreamer(TimingQuery fnTiming, Delivery fnDeliver)
  : m_fnTiming(std::move(fnTiming)), m_fnDeliver(std::move(fnDeliver))
{
}

CFrameStreamer::~CFrameStreamer()
{
  Stop();
}

Result<> CFrameStreamer::Start()
{
  if (IsStreaming()) {
    return {};
  }
  {
    const std::lock_guard lock(m_mutex);
    m_bStop = false;
    m_nTriggers = 0;
  }
  m_tNext = Clock::now();
  try {
    m_thread = std::thread([this] { Run(); });
  } catch (const std::system_error &e) {
    return Failure(std::string("The stream's thread cannot be started: ") + e.what());
  }
  m_bStreaming = true;
  return {};
}

void CFrameStreamer::Stop()
{
  if (!IsStreaming()) {
    return;
  }
  {
    const std::lock_guard lock(m_mutex);
    m_bStop = true;
  }
  m_condition.notify_one();
  m_thread.join();
  m_bStreaming = false;
}

void CFrameStreamer::Trigger()
{
  {
    const std::lock_guard lock(m_mutex);
    ++m_nTriggers;
  }
  m_condition.notify_one();
}

void CFrameStreamer::Wake()
{
  {
    const std::lock_guard lock(m_mutex);
    ++m_nWakeCount;
  }
  m_condition.notify_one();
}

void CFrameStreamer::Run()
{
  for (;;) {
    uint64_t nWakeCount = 0;
    {
      const std::lock_guard lock(m_mutex);
      if (m_bStop) {
        return;
      }
      nWakeCount = m_nWakeCount;
    }
    const STiming stTiming = m_fnTiming();
    if (WaitForTurn(stTiming, nWakeCount)) {
      m_fnDeliver();
    }
  }
}

// False when the timing has to be asked for again, or the stream stops. A frame that is late by more
// than a period is not caught up: the rhythm starts again with it.
bool CFrameStreamer::WaitForTurn(const STiming &stTiming, uint64_t nWakeCount)
{
  std::unique_lock lock(m_mutex);
  const auto isDisturbed = [&] { return m_bStop || m_nWakeCount != nWakeCount; };
  if (stTiming.bTriggered) {
    m_condition.wait(lock, [&] { return isDisturbed() || m_nTriggers > 0; });
    if (isDisturbed()) {
      return false;
    }
    --m_nTriggers;
  } else {
    if (m_condition.wait_until(lock, m_tNext, isDisturbed)) {
      return false;
    }
    m_nTriggers = 0; // left over from a triggered stream
  }
  const auto tNow = Clock::now();
  m_tNext = (tNow - m_tNext < stTiming.nPeriod ? m_tNext : tNow) + stTiming.nPeriod;
  return true;
}

} // namespace ffc::camera
