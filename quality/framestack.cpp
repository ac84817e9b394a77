#include "quality/framestack.h"

#include <new>
#include <stdexcept>

namespace ffc::quality {
namespace {

/// Keeps frames x the sum of squares of one line, however long, within 64 bits.
constexpr uint32_t MAX_FRAMES = 256;

} // namespace

bool CFrameStack::Prepare(uint32_t nWidth, uint32_t nHeight, uint32_t nBitDepth)
{
  *this = CFrameStack();
  if (nWidth == 0 || nHeight == 0 || nBitDepth < 8 || nBitDepth > 16) {
    return false;
  }
  try {
    m_listSums.assign(static_cast<std::size_t>(nWidth) * nHeight, 0);
    m_listSquareSums.assign(nHeight, {0, 0});
  } catch (const std::bad_alloc &) {
    return false;
  } catch (const std::length_error &) {
    return false;
  }
  m_nWidth = nWidth;
  m_nHeight = nHeight;
  m_nBitDepth = nBitDepth;
  return true;
}

std::size_t CFrameStack::GetFrameSize() const
{
  return static_cast<std::size_t>(m_nWidth) * m_nHeight * (m_nBitDepth > 8 ? 2U : 1U);
}

bool CFrameStack::Add(const void *pFrame, std::size_t nSize)
{
  if (pFrame == nullptr || nSize == 0 || nSize != GetFrameSize() || m_nFrames >= MAX_FRAMES) {
    return false;
  }
  if (m_nBitDepth > 8) {
    AddSamples(static_cast<const uint16_t *>(pFrame));
  } else {
    AddSamples(static_cast<const uint8_t *>(pFrame));
  }
  ++m_nFrames;
  return true;
}

template <class TSample>
void CFrameStack::AddSamples(const TSample *pSamples)
{
  const uint32_t nMaximum = GetMaximum();
  uint32_t *pSums = m_listSums.data();
  for (uint32_t nLine = 0; nLine < m_nHeight; ++nLine) {
    for (uint32_t nParity = 0; nParity < 2; ++nParity) {
      uint64_t nSquares = 0;
      uint64_t nClipped = 0;
      for (uint32_t nColumn = nParity; nColumn < m_nWidth; nColumn += 2) {
        const uint32_t nValue = pSamples[nColumn];
        pSums[nColumn] += nValue;
        nSquares += static_cast<uint64_t>(nValue) * nValue;
        nClipped += nValue >= nMaximum ? 1U : 0U;
      }
      m_listSquareSums[nLine][nParity] += nSquares;
      m_anClipped[(nLine & 1U) * 2U + nParity] += nClipped;
    }
    pSamples += m_nWidth;
    pSums += m_nWidth;
  }
}

const uint32_t *CFrameStack::GetSums(uint32_t nLine) const
{
  return m_listSums.data() + static_cast<std::size_t>(nLine) * m_nWidth;
}

double CFrameStack::GetMean(uint32_t nColumn, uint32_t nLine) const
{
  return static_cast<double>(GetSums(nLine)[nColumn]) / static_cast<double>(m_nFrames);
}

uint64_t CFrameStack::GetSquareSum(const SColorPlane &stPlane, uint32_t nLine) const
{
  uint64_t nSum = 0;
  for (uint32_t nParity = 0; nParity < 2; ++nParity) {
    nSum += stPlane.abSites[(nLine & 1U) * 2U + nParity] ? m_listSquareSums[nLine][nParity] : 0U;
  }
  return nSum;
}

uint64_t CFrameStack::GetClippedCount(const SColorPlane &stPlane) const
{
  uint64_t nSum = 0;
  for (std::size_t nSite = 0; nSite < CELL_SITES; ++nSite) {
    nSum += stPlane.abSites[nSite] ? m_anClipped[nSite] : 0U;
  }
  return nSum;
}

} // namespace ffc::quality
