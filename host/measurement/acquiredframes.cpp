#include "host/measurement/acquiredframes.h"

#include <new>

namespace ffc::host {

void CAcquiredFrames::Begin(EKind eKind, uint32_t nFrames, bool bSettles)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_bBegun && m_nWanted == 0) {
    return; // it has its frames, the stream goes on for the user
  }
  m_bBegun = true;
  m_eKind = eKind;
  (eKind == EKind::Dark ? m_pDark : m_pBright).reset();
  m_pTaken = std::make_shared<flat::SFrameSet>();
  m_nWanted = nFrames;
  m_bSettled = !bSettles;
}

void CAcquiredFrames::Count()
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_bSettled = true;
}

bool CAcquiredFrames::Fits(const camera::SCameraFrame &stFrame) const
{
  return m_pTaken->pFormat->nCode == stFrame.nPixelFormat && m_pTaken->nWidth == stFrame.nWidth &&
         m_pTaken->nHeight == stFrame.nHeight && m_pTaken->listFrames.front().size() == stFrame.nSize;
}

/// Before the white has settled, the latest frame alone is kept: it may be the first that the plug-in takes.
bool CAcquiredFrames::IsCompleteLocked() const
{
  const std::vector<std::vector<uint8_t>> &listFrames = m_pTaken->listFrames;
  return m_bSettled && !listFrames.empty() &&
         (listFrames.size() >= m_nWanted || (listFrames.size() + 1) * listFrames.front().size() > m_nLimit);
}

void CAcquiredFrames::Take(const camera::SCameraFrame &stFrame)
{
  const genapi::SSensorFormat *pFormat = genapi::FindSensorFormat(stFrame.nPixelFormat);
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_nWanted == 0 || pFormat == nullptr ||
      stFrame.nSize != std::size_t{stFrame.nWidth} * stFrame.nHeight * pFormat->GetBytesPerPixel()) {
    return;
  }
  std::vector<std::vector<uint8_t>> &listFrames = m_pTaken->listFrames;
  if (!listFrames.empty() && (!m_bSettled || !Fits(stFrame))) {
    listFrames.clear();
  }
  if (IsCompleteLocked()) {
    return;
  }
  const uint8_t *pBytes = static_cast<const uint8_t *>(stFrame.pBuffer);
  try {
    listFrames.emplace_back(pBytes, pBytes + stFrame.nSize);
  } catch (const std::bad_alloc &) {
    return; // those that are there will do
  }
  m_pTaken->pFormat = pFormat;
  m_pTaken->nWidth = stFrame.nWidth;
  m_pTaken->nHeight = stFrame.nHeight;
}

void CAcquiredFrames::End()
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_pTaken != nullptr && !m_pTaken->listFrames.empty()) {
    m_nWanted = 0;
  }
}

void CAcquiredFrames::Finish(bool bSucceeded)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_bBegun && bSucceeded && !m_pTaken->listFrames.empty()) {
    (m_eKind == EKind::Dark ? m_pDark : m_pBright) = m_pTaken;
  }
  m_pTaken.reset();
  m_nWanted = 0;
  m_bBegun = false;
}

void CAcquiredFrames::Reset()
{
  Finish(false);
  m_pBright.reset();
  m_pDark.reset();
}

} // namespace ffc::host
