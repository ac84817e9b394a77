#include "quality/framestack.h"

#include <new>
#include <stdexcept>

namespace ffc::quality {

using genapi::EColorLayout;

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
  try {
    if (m_nBitDepth > 8) {
      AddFiltered(static_cast<const uint16_t *>(pFrame));
      AddSamples(static_cast<const uint16_t *>(pFrame));
    } else {
      AddFiltered(static_cast<const uint8_t *>(pFrame));
      AddSamples(static_cast<const uint8_t *>(pFrame));
    }
  } catch (const std::bad_alloc &) {
    return false;
  }
  ++m_nFrames;
  return true;
}

template <class TSample>
void CFrameStack::AddSamples(const TSample *pSamples)
{
  for (std::size_t nPixel = 0; nPixel < m_listPixelSquares.size(); ++nPixel) {
    m_listPixelSquares[nPixel] += static_cast<uint64_t>(pSamples[nPixel]) * pSamples[nPixel];
  }
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

template <class TSample>
void CFrameStack::AddFiltered(const TSample *pSamples)
{
  for (std::size_t nChannel = 0; nChannel < m_listChannels.size(); ++nChannel) {
    const SChannel &stChannel = m_listChannels[nChannel];
    const uint32_t nColumns = stChannel.GetColumns(m_nWidth);
    CHighPass highPass(m_eHighPass, nColumns, stChannel.GetLines(m_nHeight));
    const auto fnRead = [&](uint32_t nLine, double *pLine) {
      const TSample *pFrom =
        pSamples + (stChannel.nFirstLine + std::size_t{nLine} * stChannel.nStep) * m_nWidth + stChannel.nFirstColumn;
      for (uint32_t nColumn = 0; nColumn < nColumns; ++nColumn) {
        pLine[nColumn] = pFrom[std::size_t{nColumn} * stChannel.nStep];
      }
    };
    highPass.Run(fnRead, [&](uint32_t, const double *pLine) {
      double dLine = 0;
      for (uint32_t nColumn = 0; nColumn < highPass.GetWidth(); ++nColumn) {
        dLine += pLine[nColumn] * pLine[nColumn];
      }
      m_listFilteredSquares[nChannel] += dLine;
    });
  }
}

bool CFrameStack::AlsoKeepSquares()
{
  try {
    m_listPixelSquares.assign(m_listSums.size(), 0);
  } catch (const std::bad_alloc &) {
    return false;
  }
  return true;
}

double CFrameStack::GetVariance(uint32_t nColumn, uint32_t nLine) const
{
  const uint64_t nSum = GetSums(nLine)[nColumn];
  const uint64_t nSquares = m_listPixelSquares[std::size_t{nLine} * m_nWidth + nColumn];
  return m_nFrames < 2 ? 0
                       : static_cast<double>(m_nFrames * nSquares - nSum * nSum) /
                           (static_cast<double>(m_nFrames) * (m_nFrames - 1.0));
}

void CFrameStack::AlsoFilter(EColorLayout eLayout, EHighPass eHighPass)
{
  m_listChannels = GetChannels(eLayout);
  m_eHighPass = eHighPass;
  m_listFilteredSquares.assign(m_listChannels.size(), 0.0);
}

void CFrameStack::ReadMeans(const SChannel &stChannel, uint32_t nLine, double *pLine) const
{
  const uint32_t *pSums = GetSums(stChannel.nFirstLine + nLine * stChannel.nStep);
  const uint32_t nColumns = stChannel.GetColumns(m_nWidth);
  const auto dFrames = static_cast<double>(m_nFrames);
  for (uint32_t nColumn = 0; nColumn < nColumns; ++nColumn) {
    pLine[nColumn] = pSums[stChannel.nFirstColumn + nColumn * stChannel.nStep] / dFrames;
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
