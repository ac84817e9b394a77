#include "host/recording/framerecorder.h"

#include <chrono>
#include <utility>

#include "host/viewer/framecopy.h"

namespace ffc::host {
namespace {

int64_t GetTime()
{
  const auto tNow = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(tNow).count();
}

} // namespace

CFrameRecorder::CFrameRecorder(const SLimits &stLimits, FnWrite fnWrite)
  : m_stLimits(stLimits), m_fnWrite(std::move(fnWrite)), m_thread([this] { Run(); })
{
}

CFrameRecorder::~CFrameRecorder()
{
  (void)Finish();
}

void CFrameRecorder::Add(const SProcessedFrame &stProcessed)
{
  const camera::SCameraFrame &stRaw = *stProcessed.pRaw;
  SRecordedFrame stFrame;
  stFrame.nFrameId = stRaw.nFrameId;
  stFrame.nTime = GetTime();
  stFrame.stCopy.nWidth = stRaw.nWidth;
  stFrame.stCopy.nHeight = stRaw.nHeight;
  stFrame.stCopy.nPixelFormat = stRaw.nPixelFormat;
  stFrame.stCopy.bCorrected = stProcessed.pCorrected != nullptr;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (IsFullLocked()) {
      return;
    }
    NoteGap(stRaw.nFrameId);
    if (IsFullLocked()) {
      return;
    }
    if (!HasPlaceLocked(stRaw.nSize)) {
      ++m_stCounts.nDropped;
      return;
    }
    if (!m_listSpare.empty()) {
      stFrame.stCopy.listBytes = std::move(m_listSpare.back());
      m_listSpare.pop_back();
    }
  }
  // Copied without the lock: there is one thread that adds.
  const void *pSamples = stFrame.stCopy.bCorrected ? stProcessed.pCorrected : stRaw.pBuffer;
  const bool bCopied = CopyFrame(pSamples, stRaw.nSize, stFrame.stCopy.listBytes);
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (!bCopied) {
    ++m_stCounts.nDropped;
    return;
  }
  ++m_stCounts.nTaken;
  m_nQueuedBytes += stRaw.nSize;
  m_listQueue.push_back(std::move(stFrame));
  m_work.notify_one();
}

bool CFrameRecorder::IsFull() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return IsFullLocked();
}

SRecordCounts CFrameRecorder::GetCounts() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_stCounts;
}

bool CFrameRecorder::IsDone() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return IsFullLocked() && (!m_result || m_listQueue.empty());
}

Result<> CFrameRecorder::Finish()
{
  return End(false);
}

Result<> CFrameRecorder::Discard()
{
  return End(true);
}

Result<> CFrameRecorder::End(bool bDiscard)
{
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bFinishing = true;
    m_bDiscarding = bDiscard;
  }
  m_work.notify_one();
  if (m_thread.joinable()) {
    m_thread.join();
  }
  return m_result;
}

bool CFrameRecorder::HasPlaceLocked(std::size_t nSize) const
{
  return m_listQueue.empty() || m_nQueuedBytes + nSize <= m_stLimits.nQueueBytes;
}

bool CFrameRecorder::IsFullLocked() const
{
  return m_bFinishing || m_stCounts.nTaken >= m_stLimits.nFrames || !m_result ||
         (m_stLimits.bStopOnLoss && m_stCounts.GetLost() > 0);
}

void CFrameRecorder::NoteGap(uint64_t nFrameId)
{
  if (m_nLastId && nFrameId > *m_nLastId + 1) {
    m_stCounts.nMissing += nFrameId - *m_nLastId - 1;
  }
  m_nLastId = nFrameId;
}

void CFrameRecorder::Run()
{
  std::unique_lock<std::mutex> lock(m_mutex);
  while (m_result) {
    m_work.wait(lock, [this] { return m_bFinishing || !m_listQueue.empty(); });
    if (m_listQueue.empty() || m_bDiscarding) {
      return;
    }
    // It keeps its place until it is written.
    SRecordedFrame stFrame = std::move(m_listQueue.front());
    lock.unlock();
    Result<> result = m_fnWrite(stFrame);
    lock.lock();
    m_listQueue.pop_front();
    m_nQueuedBytes -= stFrame.stCopy.listBytes.size();
    m_stCounts.nWritten += result ? 1 : 0;
    m_result = std::move(result);
    m_listSpare.push_back(std::move(stFrame.stCopy.listBytes));
  }
}

} // namespace ffc::host
