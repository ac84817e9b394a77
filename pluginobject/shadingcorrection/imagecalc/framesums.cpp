#include "pluginobject/shadingcorrection/imagecalc/framesums.h"

#include <algorithm>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"

namespace ffc::imagecalc {

namespace {

constexpr uint32_t LARGEST_NARROW_SUM = 0xFFFF;

} // namespace

int32_t CFrameSums::Add(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount)
{
  const int32_t nStatus = CheckSum(pFrame, m_pMemory, nBitDepth, nPixelCount);
  if (nStatus == IMAGECALC_STATUS_SUCCESS && !AddNarrow(pFrame, nBitDepth, nPixelCount)) {
    AddFrame(pFrame, nBitDepth, nPixelCount, Widen());
  }
  return nStatus;
}

// The next frame is expected to be no brighter than the latest one. One that is, and may have made a sum wrap round, is
// taken back.
bool CFrameSums::AddNarrow(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount)
{
  if (m_bWide || m_nSumBound + m_nLatestPixels > LARGEST_NARROW_SUM) {
    return false;
  }
  m_nPixels = std::max(m_nPixels, nPixelCount);
  m_nLatestPixels = AddFrameNarrow(pFrame, nBitDepth, nPixelCount, m_pMemory);
  m_nSumBound += m_nLatestPixels;
  const bool bHeld = m_nSumBound <= LARGEST_NARROW_SUM;
  if (!bHeld) {
    TakeFrameNarrow(pFrame, nBitDepth, nPixelCount, m_pMemory);
  }
  return bHeld;
}

int32_t CFrameSums::Average(int32_t nFrameCount, int32_t nBitDepth, int64_t nPixelCount, void *pFrame)
{
  const int32_t nStatus = CheckSum(pFrame, m_pMemory, nBitDepth, nPixelCount, nFrameCount);
  const auto nCount = static_cast<uint32_t>(nFrameCount);
  if (nStatus == IMAGECALC_STATUS_SUCCESS &&
      (m_bWide || !AverageFramesNarrow(m_pMemory, nPixelCount, nCount, nBitDepth, pFrame))) {
    AverageFrames(Widen(), nPixelCount, nCount, nBitDepth, pFrame);
  }
  return nStatus;
}

uint32_t *CFrameSums::Widen()
{
  if (!m_bWide) {
    WidenSums(m_pMemory, m_nPixels);
    m_bWide = true;
  }
  return static_cast<uint32_t *>(m_pMemory);
}

} // namespace ffc::imagecalc
