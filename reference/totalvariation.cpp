#include "reference/totalvariation.h"

#include <algorithm>
#include <cmath>

namespace ffc::reference {
namespace {

/// More of them change nothing that can be measured.
constexpr int ROUNDS = 12;
/// No smaller one keeps the steps from growing: the largest factor by which divergence and gradient stretch an image.
constexpr float STRETCH = 8;

/// Samples less the divergence of what is taken away.
void TakeAway(const SImage &samples, const float *pColumns, const float *pLines, float fWeight, const SImage &result)
{
  const std::size_t nWidth = samples.nWidth;
  for (uint32_t nLine = 0; nLine < samples.nHeight; ++nLine) {
    const float *pSamples = samples.GetLine(nLine);
    const float *pRight = pColumns + nLine * nWidth;
    const float *pBelow = pLines + nLine * nWidth;
    float *pResult = result.GetLine(nLine);
    pResult[0] = pSamples[0] + fWeight * (pRight[0] + pBelow[0]);
    for (std::size_t n = 1; n < nWidth; ++n) {
      pResult[n] = pSamples[n] + fWeight * (pRight[n] - pRight[n - 1] + pBelow[n]);
    }
    for (std::size_t n = 0; nLine > 0 && n < nWidth; ++n) {
      pResult[n] -= fWeight * (pBelow - nWidth)[n];
    }
  }
}

} // namespace

CTotalVariation::CTotalVariation(std::size_t nLargest)
  : m_listColumns(nLargest), m_listLines(nLargest), m_listNextColumns(nLargest), m_listNextLines(nLargest)
{
}

void CTotalVariation::Smooth(const SImage &samples, float fWeight, const SImage &result)
{
  for (std::vector<float> *pList : {&m_listColumns, &m_listLines, &m_listNextColumns, &m_listNextLines}) {
    std::fill_n(pList->begin(), samples.GetCount(), 0.0F);
  }
  float fPace = 1;
  for (int nRound = 0; nRound < ROUNDS; ++nRound) {
    TakeAway(samples, m_listNextColumns.data(), m_listNextLines.data(), fWeight, result);
    const float fNextPace = (1 + std::sqrt(1 + 4 * fPace * fPace)) / 2;
    Descend(result, 1 / (STRETCH * fWeight), (fPace - 1) / fNextPace);
    fPace = fNextPace;
  }
  TakeAway(samples, m_listColumns.data(), m_listLines.data(), fWeight, result);
}

/// A step along the gradient of the dual problem, back to lengths of at most 1, and on with the momentum of the step.
void CTotalVariation::Descend(const SImage &result, float fStep, float fMomentum)
{
  const std::size_t nWidth = result.nWidth;
  for (uint32_t nLine = 0; nLine < result.nHeight; ++nLine) {
    const float *pHere = result.GetLine(nLine);
    // Beyond the last line and the last column there is no difference.
    const float *pBelow = nLine + 1 < result.nHeight ? pHere + nWidth : pHere;
    float *pColumns = m_listColumns.data() + nLine * nWidth;
    float *pLines = m_listLines.data() + nLine * nWidth;
    float *pNextColumns = m_listNextColumns.data() + nLine * nWidth;
    float *pNextLines = m_listNextLines.data() + nLine * nWidth;
    const auto fnStep = [&](std::size_t n, float fRight) {
      const float fColumn = pNextColumns[n] + fStep * (fRight - pHere[n]);
      const float fLine = pNextLines[n] + fStep * (pBelow[n] - pHere[n]);
      const float fLength = std::sqrt(fColumn * fColumn + fLine * fLine);
      const float fScale = 1 / (fLength > 1 ? fLength : 1.0F);
      pNextColumns[n] = fColumn * fScale + fMomentum * (fColumn * fScale - pColumns[n]);
      pNextLines[n] = fLine * fScale + fMomentum * (fLine * fScale - pLines[n]);
      pColumns[n] = fColumn * fScale;
      pLines[n] = fLine * fScale;
    };
    for (std::size_t n = 0; n + 1 < nWidth; ++n) {
      fnStep(n, pHere[n + 1]);
    }
    fnStep(nWidth - 1, pHere[nWidth - 1]);
  }
}

} // namespace ffc::reference
