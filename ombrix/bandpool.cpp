#include "ombrix/bandpool.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace ffc::ombrix {

namespace {

constexpr uint32_t MAX_THREADS_UNASKED = 4;
// A thread that others keep from its processor within a band is waited for. Where that took more than this part of a
// frame's work, the processors are busy: the next frames are their callers' alone.
constexpr int LONGEST_WAIT = 4;

using TClock = std::chrono::steady_clock;

} // namespace

uint32_t ChooseThreadCount(const char *pWish, uint32_t nProcessors) noexcept
{
  if (pWish != nullptr && *pWish >= '0' && *pWish <= '9') {
    char *pEnd = nullptr;
    const unsigned long nWish = std::strtoul(pWish, &pEnd, 10);
    if (*pEnd == '\0' && nWish >= 1 && nWish <= MAX_THREADS) {
      return static_cast<uint32_t>(nWish);
    }
  }
  return std::clamp<uint32_t>(nProcessors / 2, 1, MAX_THREADS_UNASKED);
}

void CBandPool::Run(std::size_t nPixels, FnBand fnBand, const void *pContext) noexcept
{
  if (nPixels < SMALLEST_SPLIT_PIXELS) {
    fnBand(pContext, 0, nPixels);
    return;
  }
  const std::unique_lock<std::mutex> busy(m_busy, std::try_to_lock);
  bool bShared = busy.owns_lock();
  if (bShared && m_nAlone > 0) {
    --m_nAlone;
    bShared = false;
  }
  if (!bShared || !HasWorkers()) {
    fnBand(pContext, 0, nPixels);
    return;
  }
  const SFrame stFrame = {fnBand, pContext, nPixels};
  {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_stFrame = stFrame;
    m_nNextBand.store(0, std::memory_order_relaxed);
    ++m_nFrame;
    m_bOpen = true;
    m_bHelped = false;
  }
  m_wake.notify_all();
  const TClock::time_point start = TClock::now();
  WorkOnBands(stFrame);
  const TClock::time_point finish = TClock::now();
  // A worker that has not woken yet finds nothing left, and need not be waited for.
  std::unique_lock<std::mutex> lock(m_lock);
  m_bOpen = false;
  m_done.wait(lock, [this] { return m_nWorking == 0; });
  Judge(TClock::now() - finish > (finish - start) / LONGEST_WAIT, m_bHelped);
}

// With the caller's lock held. A try on a busy processor may cost a time slice, which is many frames: tries become
// rare.
void CBandPool::Judge(bool bWaitedLong, bool bHelped) noexcept
{
  if (bWaitedLong) {
    m_nAlone = m_nNextAlone;
    m_nNextAlone = std::min(2 * m_nNextAlone, MOST_FRAMES_ALONE);
  } else if (bHelped) {
    constexpr uint32_t SLOWLY = 16;
    m_nNextAlone = std::max(m_nNextAlone - m_nNextAlone / SLOWLY, FRAMES_ALONE);
  }
}

void CBandPool::Close() noexcept
{
  const std::lock_guard<std::mutex> busy(m_busy);
  {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_bClosing = true;
  }
  m_wake.notify_all();
  while (m_nWorkers > 0) {
    m_aWorkers[--m_nWorkers].Join();
  }
  m_bStarted = true;
}

// With the caller's lock held. What the system has no threads for, the others do.
bool CBandPool::HasWorkers() noexcept
{
  if (!m_bStarted) {
    m_bStarted = true;
    if (m_nThreads == 0) {
      m_nThreads = ChooseThreadCount(std::getenv("OMBRIX_THREADS"), platform::CountUsableProcessors());
    }
    if (m_nThreads > 1 && m_fnPrepare != nullptr) {
      m_fnPrepare();
    }
    while (m_nWorkers + 1 < m_nThreads && m_aWorkers[m_nWorkers].Start(RunWorker, this)) {
      ++m_nWorkers;
    }
  }
  return m_nWorkers > 0;
}

void CBandPool::WorkOnBands(const SFrame &stFrame) noexcept
{
  const std::size_t nBands = (stFrame.nPixels - 1) / BAND_PIXELS + 1;
  for (;;) {
    const std::size_t nBand = m_nNextBand.fetch_add(1, std::memory_order_relaxed);
    if (nBand >= nBands) {
      return;
    }
    const std::size_t nFirst = nBand * BAND_PIXELS;
    stFrame.fnBand(stFrame.pContext, nFirst, std::min(BAND_PIXELS, stFrame.nPixels - nFirst));
  }
}

void CBandPool::WaitForFrames() noexcept
{
  uint64_t nSeen = 0;
  std::unique_lock<std::mutex> lock(m_lock);
  for (;;) {
    m_wake.wait(lock, [&] { return m_bClosing || (m_bOpen && m_nFrame != nSeen); });
    if (m_bClosing) {
      return;
    }
    nSeen = m_nFrame;
    const SFrame stFrame = m_stFrame;
    ++m_nWorking;
    m_bHelped = true;
    lock.unlock();
    WorkOnBands(stFrame);
    lock.lock();
    if (--m_nWorking == 0) {
      m_done.notify_one();
    }
  }
}

void CBandPool::RunWorker(void *pPool)
{
  static_cast<CBandPool *>(pPool)->WaitForFrames();
}

} // namespace ffc::ombrix
