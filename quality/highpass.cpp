#include "quality/highpass.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ffc::quality {
namespace {

constexpr std::array<std::pair<EHighPass, const char *>, 3> NAMES = {{
  {EHighPass::Release4, "release4"},
  {EHighPass::Release4Inner, "release4-inner"},
  {EHighPass::Release3, "release3"},
}};

std::vector<double> Convolve(const std::vector<double> &listOne, const std::vector<double> &listOther)
{
  std::vector<double> listResult(listOne.size() + listOther.size() - 1, 0.0);
  for (std::size_t nOne = 0; nOne < listOne.size(); ++nOne) {
    for (std::size_t nOther = 0; nOther < listOther.size(); ++nOther) {
      listResult[nOne + nOther] += listOne[nOne] * listOther[nOther];
    }
  }
  return listResult;
}

std::vector<double> MakeWeights(EHighPass eKind)
{
  if (eKind == EHighPass::Release3) {
    return std::vector<double>(5, 1.0);
  }
  return Convolve(Convolve(std::vector<double>(7, 1.0), std::vector<double>(11, 1.0)), {1.0, 2.0, 1.0});
}

/// Where a position beyond the border lies when the image goes on as its mirror, edge pixels twice.
uint32_t Mirror(int64_t nPosition, uint32_t nLength)
{
  const int64_t nPeriod = 2 * int64_t{nLength};
  const int64_t nWithin = ((nPosition % nPeriod) + nPeriod) % nPeriod;
  return static_cast<uint32_t>(nWithin < nLength ? nWithin : nPeriod - 1 - nWithin);
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
  : m_listWeights(MakeWeights(eKind)), m_nWidth(nWidth), m_nHeight(nHeight)
{
  const auto nReach = static_cast<uint32_t>(m_listWeights.size() / 2);
  for (const double dWeight : m_listWeights) {
    m_dWeight += dWeight;
  }
  m_dWeight *= m_dWeight;
  if (eKind != EHighPass::Release4) {
    // What is too narrow to have an inner part has none in either direction.
    const bool bInner = nWidth > 2 * nReach && nHeight > 2 * nReach;
    m_nCutColumns = bInner ? nReach : nWidth / 2;
    m_nCutLines = bInner ? nReach : nHeight / 2;
    m_nWidth = bInner ? nWidth : 2 * m_nCutColumns;
    m_nHeight = bInner ? nHeight : 2 * m_nCutLines;
  }
  m_listRaw.assign(m_listWeights.size(), std::vector<double>(m_nWidth));
  m_listSmoothed = m_listRaw;
  m_listPadded.resize(m_nWidth + 2 * std::size_t{nReach});
  m_listOut.resize(m_nWidth);
}

void CHighPass::Run(const FnRead &fnRead, const FnTake &fnTake)
{
  if (GetWidth() == 0 || GetHeight() == 0) {
    return;
  }
  const auto nReach = static_cast<uint32_t>(m_listWeights.size() / 2);
  uint32_t nRead = 0;
  for (uint32_t nLine = 0; nLine < m_nHeight; ++nLine) {
    for (; nRead < m_nHeight && nRead <= nLine + nReach; ++nRead) {
      ReadLine(nRead, fnRead);
    }
    if (nLine >= m_nCutLines && nLine < m_nHeight - m_nCutLines) {
      SmoothDown(nLine);
      fnTake(nLine - m_nCutLines, m_listOut.data() + m_nCutColumns);
    }
  }
}

void CHighPass::ReadLine(uint32_t nLine, const FnRead &fnRead)
{
  std::vector<double> &listRaw = GetRaw(nLine);
  fnRead(nLine, listRaw.data());
  const auto nReach = static_cast<int64_t>(m_listWeights.size() / 2);
  for (int64_t n = -nReach; n < 0; ++n) {
    m_listPadded[static_cast<std::size_t>(n + nReach)] = listRaw[Mirror(n, m_nWidth)];
    m_listPadded[m_listPadded.size() - static_cast<std::size_t>(n + nReach) - 1] =
      listRaw[Mirror(m_nWidth - 1 - n, m_nWidth)];
  }
  std::copy(listRaw.begin(), listRaw.end(), m_listPadded.begin() + nReach);
  std::vector<double> &listSmoothed = GetSmoothed(nLine);
  std::fill(listSmoothed.begin(), listSmoothed.end(), 0.0);
  for (std::size_t nWeight = 0; nWeight < m_listWeights.size(); ++nWeight) {
    const double dWeight = m_listWeights[nWeight];
    const double *pFrom = m_listPadded.data() + nWeight;
    double *pTo = listSmoothed.data();
    for (uint32_t nColumn = 0; nColumn < m_nWidth; ++nColumn) {
      pTo[nColumn] += dWeight * pFrom[nColumn];
    }
  }
}

void CHighPass::SmoothDown(uint32_t nLine)
{
  std::fill(m_listOut.begin(), m_listOut.end(), 0.0);
  const auto nReach = static_cast<int64_t>(m_listWeights.size() / 2);
  for (std::size_t nWeight = 0; nWeight < m_listWeights.size(); ++nWeight) {
    const double dWeight = m_listWeights[nWeight];
    const double *pFrom =
      GetSmoothed(Mirror(int64_t{nLine} + static_cast<int64_t>(nWeight) - nReach, m_nHeight)).data();
    double *pTo = m_listOut.data();
    for (uint32_t nColumn = 0; nColumn < m_nWidth; ++nColumn) {
      pTo[nColumn] += dWeight * pFrom[nColumn];
    }
  }
  const double *pRaw = GetRaw(nLine).data();
  for (uint32_t nColumn = 0; nColumn < m_nWidth; ++nColumn) {
    m_listOut[nColumn] = pRaw[nColumn] - m_listOut[nColumn] / m_dWeight;
  }
}

} // namespace ffc::quality
