#include "quality/highpass.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <numeric>
#include <utility>

namespace ffc::quality {
namespace {

constexpr std::array<std::pair<EHighPass, const char *>, 3> NAMES = {{
  {EHighPass::Release4, "release4"},
  {EHighPass::Release4Inner, "release4-inner"},
  {EHighPass::Release3, "release3"},
}};

std::vector<uint32_t> GetBoxes(EHighPass eKind)
{
  return eKind == EHighPass::Release3 ? std::vector<uint32_t>{5} : std::vector<uint32_t>{7, 11, 2, 2};
}

/// Where a position beyond the border lies when the image goes on as its mirror, edge pixels twice.
/// \param nLength above 0
uint32_t Mirror(int64_t nPosition, uint32_t nLength)
{
  assert(nLength > 0);
  const int64_t nPeriod = 2 * int64_t{nLength};
  const int64_t nWithin = ((nPosition % nPeriod) + nPeriod) % nPeriod;
  return static_cast<uint32_t>(nWithin < nLength ? nWithin : nPeriod - 1 - nWithin);
}

/// Replaces each value by the sum of those that the box covers from there on.
/// \param nCount sums; nBox - 1 values follow behind them
void AddUpBoxes(double *pValues, uint32_t nBox, std::size_t nCount)
{
  double dSum = std::accumulate(pValues, pValues + nBox, 0.0);
  for (std::size_t n = 0; n + 1 < nCount; ++n) {
    const double dChange = pValues[n + nBox] - pValues[n];
    pValues[n] = dSum;
    dSum += dChange;
  }
  pValues[nCount - 1] = dSum;
}

} // namespace

const char *GetHighPassName(EHighPass eKind)
{
  return NAMES[static_cast<std::size_t>(eKind)].second;
}

bool FindHighPass(std::string_view strName, EHighPass &eKind)
{
  for (const auto &[eNamed, pName] : NAMES) {
    if (strName == pName) {
      eKind = eNamed;
      return true;
    }
  }
  return false;
}

CHighPass::CHighPass(EHighPass eKind, uint32_t nWidth, uint32_t nHeight)
  : m_listBoxes(GetBoxes(eKind)), m_nWidth(nWidth), m_nHeight(nHeight)
{
  for (const uint32_t nBox : m_listBoxes) {
    m_nReach += nBox - 1;
    m_dWeight *= static_cast<double>(nBox) * nBox;
  }
  m_nReach /= 2;
  if (eKind != EHighPass::Release4) {
    // What is too narrow to have an inner part has none in either direction.
    const bool bInner = nWidth > 2 * m_nReach && nHeight > 2 * m_nReach;
    m_nCutColumns = bInner ? m_nReach : nWidth / 2;
    m_nCutLines = bInner ? m_nReach : nHeight / 2;
    m_nWidth = bInner ? nWidth : 2 * m_nCutColumns;
    m_nHeight = bInner ? nHeight : 2 * m_nCutLines;
  }
  m_raw = CRing(m_nReach + 1, m_nWidth);
  m_smoothAlong = m_raw;
  m_listPadded.resize(m_nWidth + 2 * std::size_t{m_nReach});
  m_listOut.resize(m_nWidth);
}

void CHighPass::Run(const FnRead &fnRead, const FnTake &fnTake)
{
  if (GetWidth() == 0 || GetHeight() == 0) {
    return;
  }
  m_listDown.clear();
  for (const uint32_t nBox : m_listBoxes) {
    m_listDown.push_back({CRing(nBox, m_nWidth), std::vector<double>(m_nWidth)});
  }
  uint32_t nRead = 0;
  for (uint32_t nPadded = 0; nPadded < m_nHeight + 2 * m_nReach; ++nPadded) {
    for (; nRead < m_nHeight && nRead + m_nReach <= std::max(nPadded, 2 * m_nReach - 1); ++nRead) {
      ReadLine(nRead, fnRead);
    }
    const double *pSmooth = SmoothDown(nPadded);
    const uint32_t nLine = nPadded - 2 * m_nReach;
    if (nPadded >= 2 * m_nReach + m_nCutLines && nLine < m_nHeight - m_nCutLines) {
      Subtract(m_raw.GetLine(nLine), pSmooth);
      fnTake(nLine - m_nCutLines, m_listOut.data() + m_nCutColumns);
    }
  }
}

void CHighPass::ReadLine(uint32_t nLine, const FnRead &fnRead)
{
  double *pRaw = m_raw.GetLine(nLine);
  fnRead(nLine, pRaw);
  for (uint32_t n = 0; n < m_nReach; ++n) {
    m_listPadded[n] = pRaw[Mirror(int64_t{n} - m_nReach, m_nWidth)];
    m_listPadded[m_nReach + m_nWidth + n] = pRaw[Mirror(int64_t{m_nWidth} + n, m_nWidth)];
  }
  std::copy(pRaw, pRaw + m_nWidth, m_listPadded.begin() + m_nReach);
  std::size_t nCount = m_listPadded.size();
  for (const uint32_t nBox : m_listBoxes) {
    nCount -= nBox - 1;
    AddUpBoxes(m_listPadded.data(), nBox, nCount);
  }
  std::copy_n(m_listPadded.begin(), m_nWidth, m_smoothAlong.GetLine(nLine));
}

/// Takes the lines in their order, the mirrored ones before and behind the image too.
/// \return the sums of the last 2 x reach + 1 lines, weighted
const double *CHighPass::SmoothDown(uint32_t nPadded)
{
  const double *pLine = m_smoothAlong.GetLine(Mirror(int64_t{nPadded} - m_nReach, m_nHeight));
  for (SBox &stBox : m_listDown) {
    double *pOldest = stBox.lines.GetLine(nPadded);
    double *pSums = stBox.listSums.data();
    for (uint32_t nColumn = 0; nColumn < m_nWidth; ++nColumn) {
      pSums[nColumn] += pLine[nColumn] - pOldest[nColumn];
      pOldest[nColumn] = pLine[nColumn];
    }
    pLine = pSums;
  }
  return pLine;
}

void CHighPass::Subtract(const double *pRaw, const double *pSmooth)
{
  for (uint32_t nColumn = 0; nColumn < m_nWidth; ++nColumn) {
    m_listOut[nColumn] = pRaw[nColumn] - pSmooth[nColumn] / m_dWeight;
  }
}

} // namespace ffc::quality
