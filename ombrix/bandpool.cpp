#include "ombrix/bandpool.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace ffc::ombrix {

namespace {

constexpr uint32_t MAX_THREADS_UNASKED = 4;

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

void CBandPool::Run(std::size_t nPixels, FnBand fnBand, const void *pContext, uintptr_t nKind) noexcept
{
  if (nPixels < SMALLEST_SPLIT_PIXELS) {
    fnBand(pContext, 0, nPixels);
    return;
  }
  const std::unique_lock<std::mutex> busy(m_busy, std::try_to_lock);
  if (!busy.owns_lock() || !HasWorkers()) {
    fnBand(pContext, 0, nPixels);
    return;
  }
  CSharingJudge &judge = FindJudge(nKind, nPixels);
  const TClock::time_point start = TClock::now();
  if (judge.SharesNext()) {
    Share({fnBand, pContext, nPixels, std::size_t{m_nWorkers} + 1});
    judge.CountShared(TClock::now() - start);
  } else {
    fnBand(pContext, 0, nPixels);
    judge.CountAlone(TClock::now() - start);
  }
}

// With the caller's lock held. A new kind takes the place of the one that came first.
CSharingJudge &CBandPool::FindJudge(uintptr_t nKind, std::size_t nPixels) noexcept
{
  for (SKind &stKind : m_aKinds) {
    if (stKind.nKind == nKind && stKind.nPixels == nPixels) {
      return stKind.judge;
    }
  }
  SKind &stKind = m_aKinds[m_nNextKind];
  m_nNextKind = (m_nNextKind + 1) % KINDS;
  stKind = {nKind, nPixels, {}};
  return stKind.judge;
}

void CBandPool::Share(const SFrame &stFrame) noexcept
{
  Offer(stFrame);
  const TClock::time_point start = TClock::now();
  const std::size_t nBands = WorkOnBands(stFrame, 0);
  WaitForWorkers(2 * (TClock::now() - start) / static_cast<TClock::rep>(std::max<std::size_t>(nBands, 1)));
}

void CBandPool::Offer(const SFrame &stFrame) noexcept
{
  {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_stFrame = stFrame;
    for (std::size_t nShare = 0; nShare < stFrame.nShares; ++nShare) {
      m_aShares[nShare].nNext.store(stFrame.GetFirstBand(nShare), std::memory_order_relaxed);
    }
    m_nEntered = 0;
    ++m_nFrame;
    m_bOpen = true;
  }
  m_wake.notify_all();
}

// A worker that has not woken yet finds nothing left, and need not be waited for. The others are within their last
// bands: to sleep and be woken would take longer than these do, unless one has lost its processor.
void CBandPool::WaitForWorkers(TClock::duration patience) noexcept
{
  {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_bOpen = false;
  }
  const TClock::time_point begin = TClock::now();
  while (m_nWorking.load(std::memory_order_acquire) > 0) {
    if (TClock::now() - begin > patience) {
      std::unique_lock<std::mutex> lock(m_lock);
      m_done.wait(lock, [this] { return m_nWorking == 0; });
      return;
    }
    std::this_thread::yield();
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
    while (m_nWorkers + 1 < m_nThreads && m_fnStart(m_aWorkers[m_nWorkers], RunWorker, this)) {
      ++m_nWorkers;
    }
  }
  return m_nWorkers > 0;
}

// Gives how many.
std::size_t CBandPool::WorkOnBands(const SFrame &stFrame, std::size_t nOwnShare) noexcept
{
  std::size_t nBands = 0;
  for (std::size_t n = 0; n < stFrame.nShares; ++n) {
    const std::size_t nShare = (nOwnShare + n) % stFrame.nShares;
    const std::size_t nEnd = stFrame.GetFirstBand(nShare + 1);
    for (;;) {
      const std::size_t nBand = m_aShares[nShare].nNext.fetch_add(1, std::memory_order_relaxed);
      if (nBand >= nEnd) {
        break;
      }
      const std::size_t nFirst = nBand * BAND_PIXELS;
      stFrame.fnBand(stFrame.pContext, nFirst, std::min(BAND_PIXELS, stFrame.nPixels - nFirst));
      ++nBands;
    }
  }
  return nBands;
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
    const std::size_t nShare = ++m_nEntered;
    ++m_nWorking;
    lock.unlock();
    (void)WorkOnBands(stFrame, nShare);
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

bool CBandPool::StartThread(platform::CWorkerThread &thread, platform::CWorkerThread::FnWork fnWork, void *pContext)
{
  return thread.Start(fnWork, pContext);
}

} // namespace ffc::ombrix
