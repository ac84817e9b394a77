#include "reference/edgepixels.h"

#include <algorithm>

namespace ffc::reference {
namespace {

/// Around an edge, pixels.
constexpr uint32_t MARGIN = 7;

uint32_t CountCells(uint32_t nSide)
{
  return (nSide + CEdgePixels::BOX_SIDE - 1) / CEdgePixels::BOX_SIDE;
}

} // namespace

CEdgePixels::CEdgePixels(uint32_t nLongestSide)
  : m_listMarks(std::size_t{nLongestSide} * nLongestSide), m_listSeen(nLongestSide),
    m_listBoxes(std::size_t{CountCells(nLongestSide)} * CountCells(nLongestSide))
{
  m_listPixels.reserve(GetMost());
}

bool CEdgePixels::Find(uint32_t nWidth, uint32_t nHeight)
{
  m_nWidth = nWidth;
  m_nMost = std::size_t{nWidth} * nHeight / LARGEST_PART;
  m_listPixels.clear();
  std::fill(m_listSeen.begin(), m_listSeen.end(), 0U);
  std::fill(m_listBoxes.begin(), m_listBoxes.end(), SBox{});
  uint32_t nSeen = 0;
  for (uint32_t nLine = REACH; nLine + REACH < nHeight; ++nLine) {
    for (; nSeen <= nLine + MARGIN; ++nSeen) {
      SeeLine(nSeen);
    }
    if (!AddLine(nLine)) {
      return false;
    }
  }
  return !m_listPixels.empty();
}

void CEdgePixels::SeeLine(uint32_t nLine)
{
  const uint8_t *pMarks = m_listMarks.data() + std::size_t{nLine} * m_nWidth;
  for (uint32_t n = 0; n < m_nWidth; ++n) {
    m_listSeen[n] = pMarks[n] != 0 ? nLine + 1 : m_listSeen[n];
  }
}

/// \return whether there are not too many
bool CEdgePixels::AddLine(uint32_t nLine)
{
  uint32_t nSeen = 0; // the column after the last one with an edge
  for (uint32_t n = REACH - MARGIN; n + REACH < m_nWidth + MARGIN; ++n) {
    nSeen = m_listSeen[n] > nLine - MARGIN ? n + 1 : nSeen;
    if (n >= REACH + MARGIN && nSeen > n - 2 * MARGIN) {
      if (m_listPixels.size() == m_nMost) {
        return false;
      }
      Add(n - MARGIN, nLine);
    }
  }
  return true;
}

void CEdgePixels::Add(uint32_t nColumn, uint32_t nLine)
{
  m_listPixels.push_back(nLine * m_nWidth + nColumn);
  SBox &stBox = m_listBoxes[std::size_t{nLine / BOX_SIDE} * CountCells(m_nWidth) + nColumn / BOX_SIDE];
  const bool bFirst = stBox.nEndColumn == 0;
  stBox.nFirstColumn = bFirst ? nColumn : std::min(stBox.nFirstColumn, nColumn);
  stBox.nFirstLine = bFirst ? nLine : stBox.nFirstLine;
  stBox.nEndColumn = std::max(stBox.nEndColumn, nColumn + 1);
  stBox.nEndLine = nLine + 1;
}

std::size_t CEdgePixels::CountRun(std::size_t nFirst) const
{
  const std::size_t nMost = std::min(LONGEST_RUN, m_listPixels.size() - nFirst);
  std::size_t nCount = 1;
  while (nCount < nMost && m_listPixels[nFirst + nCount] == m_listPixels[nFirst] + nCount) {
    ++nCount;
  }
  return nCount;
}

} // namespace ffc::reference
