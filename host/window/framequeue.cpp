#include "host/window/framequeue.h"

#include <new>
#include <utility>

#include "host/viewer/framecopy.h"

namespace ffc::host {
namespace {

constexpr std::size_t MAX_WAITING_BYTES = std::size_t{512} << 20;

} // namespace

CFrameQueue::CFrameQueue(FnWrite fnWrite) : m_fnWrite(std::move(fnWrite)), m_thread([this] { Run(); }) {}

CFrameQueue::~CFrameQueue()
{
  (void)Finish();
}

void CFrameQueue::Push(const SProcessedFrame &stFrame)
{
  const camera::SCameraFrame &stRaw = *stFrame.pRaw;
  const std::lock_guard<std::mutex> lock(m_mutex);
  SFrameCopy stCopy;
  const void *pSamples = stFrame.pCorrected == nullptr ? stRaw.pBuffer : stFrame.pCorrected;
  if (m_nWaitingBytes + stRaw.nSize > MAX_WAITING_BYTES || !CopyFrame(pSamples, stRaw.nSize, stCopy.listBytes)) {
    ++m_nMissed;
    return;
  }
  stCopy.nWidth = stRaw.nWidth;
  stCopy.nHeight = stRaw.nHeight;
  stCopy.nPixelFormat = stRaw.nPixelFormat;
  stCopy.bCorrected = stFrame.pCorrected != nullptr;
  try {
    m_listWaiting.push_back(std::move(stCopy));
  } catch (const std::bad_alloc &) {
    ++m_nMissed;
    return;
  }
  m_nWaitingBytes += stRaw.nSize;
  m_condition.notify_one();
}

void CFrameQueue::Run()
{
  std::unique_lock<std::mutex> lock(m_mutex);
  while (true) {
    m_condition.wait(lock, [this] { return m_bEnd || !m_listWaiting.empty(); });
    if (m_bEnd) {
      return;
    }
    const SFrameCopy stFrame = std::move(m_listWaiting.front());
    m_listWaiting.pop_front();
    lock.unlock();
    const Result<> written = m_fnWrite(stFrame);
    lock.lock();
    m_nWaitingBytes -= stFrame.listBytes.size();
    if (!written) {
      m_result = written;
      return;
    }
    ++m_nWritten;
  }
}

uint32_t CFrameQueue::GetWritten() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_nWritten;
}

uint32_t CFrameQueue::GetMissed() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_nMissed;
}

bool CFrameQueue::HasFailed() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return !m_result;
}

Result<> CFrameQueue::Finish()
{
  if (m_thread.joinable()) {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_bEnd = true;
    }
    m_condition.notify_one();
    m_thread.join();
  }
  return m_result;
}

} // namespace ffc::host
