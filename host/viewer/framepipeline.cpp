#include "host/viewer/framepipeline.h"

#include <chrono>
#include <new>
#include <utility>

#include "genapi/pfnc.h"
#include "host/viewer/framecopy.h"

namespace ffc::host {

using camera::SCameraFrame;

void CFramePipeline::Receive(const SCameraFrame &stFrame)
{
  if (m_fnObserver) {
    m_fnObserver();
  }
  int32_t nStatus = 0;
  uint64_t nNanoseconds = 0;
  const bool bCorrected = Correct(stFrame, nStatus, nNanoseconds);

  const std::lock_guard<std::mutex> lock(m_mutex);
  Count(stFrame, bCorrected, nNanoseconds);
  Serve({&stFrame, bCorrected ? m_listOutput.data() : nullptr});
  KeepLatest(stFrame, bCorrected, nStatus);
}

void CFramePipeline::Count(const SCameraFrame &stFrame, bool bCorrected, uint64_t nNanoseconds)
{
  ++m_stCounts.nReceived;
  // A smaller number is that of a stream that began anew.
  if (m_nLastFrameId && stFrame.nFrameId > *m_nLastFrameId + 1) {
    m_stCounts.nLost += stFrame.nFrameId - *m_nLastFrameId - 1;
  }
  m_nLastFrameId = stFrame.nFrameId;
  if (bCorrected) {
    ++m_stCounts.nCorrected;
    ++m_stThroughput.nFrames;
    m_stThroughput.nPixels += static_cast<uint64_t>(stFrame.nWidth) * stFrame.nHeight;
    m_stThroughput.nNanoseconds += nNanoseconds;
  }
}

bool CFramePipeline::Correct(const SCameraFrame &stFrame, int32_t &nStatus, uint64_t &nNanoseconds)
{
  if (m_pPlugin == nullptr || m_bWithheld || !genapi::IsCorrectable(stFrame.nPixelFormat)) {
    return false;
  }
  try {
    m_listOutput.resize(stFrame.nSize);
  } catch (const std::bad_alloc &) {
    return false;
  }
  PLUGIN_IMAGE_INFO stInput;
  stInput.nPixelFormat = static_cast<int32_t>(stFrame.nPixelFormat);
  stInput.nWidth = static_cast<int32_t>(stFrame.nWidth);
  stInput.nHeight = static_cast<int32_t>(stFrame.nHeight);
  stInput.nPayloadSize = static_cast<int32_t>(stFrame.nSize);
  PLUGIN_IMAGE_INFO stOutput = stInput;
  // The interface has one record for both directions; the plug-in only reads its input.
  stInput.pBuffer = const_cast<void *>(stFrame.pBuffer);
  stOutput.pBuffer = m_listOutput.data();
  PLUGIN_PROCESS_RESULT stResult;

  const auto tBegin = std::chrono::steady_clock::now();
  nStatus = m_pPlugin->ProcessImage(&stInput, &stOutput, PLUGIN_PROCESS_MODE_FRAME, &stResult);
  const auto tSpent = std::chrono::steady_clock::now() - tBegin;
  nNanoseconds = static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(tSpent).count());
  return nStatus == 0 && stResult.bCorrected != 0;
}

void CFramePipeline::Serve(const SProcessedFrame &stFrame)
{
  if (m_nMissing == 0 || (m_eWanted == EWanted::Corrected && stFrame.pCorrected == nullptr)) {
    return;
  }
  m_fnSink(stFrame);
  if (--m_nMissing == 0) {
    m_fnSink = nullptr;
    m_conditionServed.notify_all();
  }
}

/// As the second frame of the mailbox, which stays empty where memory is short.
void CFramePipeline::KeepLatestRaw(const SCameraFrame &stFrame)
{
  std::shared_ptr<SFrameCopy> &pRaw = m_stLatest.pRaw;
  try {
    pRaw = pRaw == nullptr ? std::make_shared<SFrameCopy>() : pRaw;
  } catch (const std::bad_alloc &) {
    return;
  }
  if (!CopyFrame(stFrame.pBuffer, stFrame.nSize, pRaw->listBytes)) {
    pRaw.reset();
    return;
  }
  m_stCounts.nCopiedBytes += stFrame.nSize;
  pRaw->nWidth = stFrame.nWidth;
  pRaw->nHeight = stFrame.nHeight;
  pRaw->nPixelFormat = stFrame.nPixelFormat;
}

void CFramePipeline::KeepLatest(const SCameraFrame &stFrame, bool bCorrected, int32_t nStatus)
{
  m_stCounts.nOverwritten += m_bLatestIsNew ? 1U : 0U;
  if (bCorrected) {
    m_stLatest.listBytes.swap(m_listOutput);
  } else if (CopyFrame(stFrame.pBuffer, stFrame.nSize, m_stLatest.listBytes)) {
    m_stCounts.nCopiedBytes += stFrame.nSize;
  } else {
    m_bLatestIsNew = false;
    return;
  }
  m_stLatest.nWidth = stFrame.nWidth;
  m_stLatest.nHeight = stFrame.nHeight;
  m_stLatest.nPixelFormat = stFrame.nPixelFormat;
  m_stLatest.bCorrected = bCorrected;
  m_stLatest.nStatus = nStatus;
  m_bLatestIsNew = true;
  if (bCorrected && m_bKeepsRaw) {
    KeepLatestRaw(stFrame);
  } else {
    m_stLatest.pRaw.reset();
  }
}

void CFramePipeline::Request(uint32_t nFrames, EWanted eWanted, FrameSink fnSink)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_nMissing = nFrames;
  m_eWanted = eWanted;
  m_fnSink = std::move(fnSink);
}

uint32_t CFramePipeline::WaitServed(uint32_t nMilliseconds)
{
  std::unique_lock<std::mutex> lock(m_mutex);
  m_conditionServed.wait_for(lock, std::chrono::milliseconds(nMilliseconds), [this] { return m_nMissing == 0; });
  return m_nMissing;
}

void CFramePipeline::CancelRequest()
{
  Request(0, EWanted::Any, nullptr);
}

bool CFramePipeline::TakeLatest(SFrameCopy &stCopy)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (!m_bLatestIsNew) {
    return false;
  }
  std::swap(stCopy, m_stLatest);
  m_bLatestIsNew = false;
  return true;
}

uint64_t CFramePipeline::GetReceivedCount() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_stCounts.nReceived;
}

SFrameCounts CFramePipeline::GetCounts() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_stCounts;
}

SThroughput CFramePipeline::GetThroughput() const
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_stThroughput;
}

void CFramePipeline::ResetThroughput()
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_stThroughput = SThroughput();
}

} // namespace ffc::host
