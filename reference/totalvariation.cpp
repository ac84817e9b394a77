#include "reference/totalvariation.h"

#include <algorithm>
#include <cmath>

#include "reference/kernels/referencekernels.h"

namespace ffc::reference {
namespace {

/// More of them change nothing that can be measured.
constexpr uint32_t ROUNDS = 12;
/// A round brings in the next pixel, and so does what is taken away at last.
static_assert(CTotalVariation::REACH == ROUNDS + 1);
/// No smaller one keeps the steps from growing: the largest factor by which divergence and gradient stretch an image.
constexpr float STRETCH = 8;

/// A box and what is in reach of it.
SBox Widen(const SBox &stBox, const SImage &image)
{
  constexpr uint32_t REACH = CTotalVariation::REACH;
  return {stBox.nFirstColumn - std::min(stBox.nFirstColumn, REACH),
          stBox.nFirstLine - std::min(stBox.nFirstLine, REACH), std::min(stBox.nEndColumn + REACH, image.nWidth),
          std::min(stBox.nEndLine + REACH, image.nHeight)};
}

} // namespace

CTotalVariation::CTotalVariation(std::size_t nLargest)
  : m_listResult(nLargest), m_listColumns(nLargest), m_listLines(nLargest), m_listNextColumns(nLargest),
    m_listNextLines(nLargest)
{
}

void CTotalVariation::Smooth(const SImage &samples, const SBox &stBox, float fWeight, const SImage &result)
{
  const SBox stWide = Widen(stBox, samples);
  const std::size_t nCount = std::size_t{stWide.GetWidth()} * stWide.GetHeight();
  for (std::vector<float> *pList : {&m_listColumns, &m_listLines, &m_listNextColumns, &m_listNextLines}) {
    std::fill_n(pList->begin(), nCount, 0.0F);
  }
  float fPace = 1;
  for (uint32_t nRound = 0; nRound < ROUNDS; ++nRound) {
    TakeAway(samples, stWide, m_listNextColumns, m_listNextLines, fWeight);
    const float fNextPace = (1 + std::sqrt(1 + 4 * fPace * fPace)) / 2;
    Descend(stWide, 1 / (STRETCH * fWeight), (fPace - 1) / fNextPace);
    fPace = fNextPace;
  }
  TakeAway(samples, stWide, m_listColumns, m_listLines, fWeight);
  for (uint32_t nLine = stBox.nFirstLine; nLine < stBox.nEndLine; ++nLine) {
    const float *pFrom = m_listResult.data() + std::size_t{nLine - stWide.nFirstLine} * stWide.GetWidth() +
                         (stBox.nFirstColumn - stWide.nFirstColumn);
    std::copy_n(pFrom, stBox.GetWidth(), result.GetLine(nLine) + stBox.nFirstColumn);
  }
}

/// Samples less the divergence of what is taken away.
void CTotalVariation::TakeAway(const SImage &samples, const SBox &stWide, const std::vector<float> &listColumns,
                               const std::vector<float> &listLines, float fWeight)
{
  const std::size_t nWidth = stWide.GetWidth();
  for (uint32_t nLine = 0; nLine < stWide.GetHeight(); ++nLine) {
    const std::size_t nBegin = nLine * nWidth;
    const float *pLines = listLines.data() + nBegin;
    const STakenAway stTaken = {listColumns.data() + nBegin, pLines, nLine > 0 ? pLines - nWidth : nullptr, fWeight};
    GetReferenceKernels().fnTakeAway(stTaken, samples.GetLine(stWide.nFirstLine + nLine) + stWide.nFirstColumn, nWidth,
                                     m_listResult.data() + nBegin);
  }
}

/// A step along the gradient of the dual problem, back to lengths of at most 1, and on with the momentum of the step.
void CTotalVariation::Descend(const SBox &stWide, float fStep, float fMomentum)
{
  const std::size_t nWidth = stWide.GetWidth();
  for (uint32_t nLine = 0; nLine < stWide.GetHeight(); ++nLine) {
    const std::size_t nBegin = nLine * nWidth;
    const float *pHere = m_listResult.data() + nBegin;
    // Beyond the last line there is no difference.
    const float *pBelow = nLine + 1 < stWide.GetHeight() ? pHere + nWidth : pHere;
    GetReferenceKernels().fnDescend({pHere, pBelow, nWidth, fStep, fMomentum}, m_listColumns.data() + nBegin,
                                    m_listLines.data() + nBegin, m_listNextColumns.data() + nBegin,
                                    m_listNextLines.data() + nBegin);
  }
}

} // namespace ffc::reference
