#include "reference/tileprofiles.h"

#include <array>

namespace ffc::reference {
namespace {

/// Steps towards the robust mean, from the plain one.
constexpr uint32_t ROUNDS = 3;
/// 1.5 standard deviations of a normal distribution, in its mean distances from 0.
constexpr float REACH = 1.5F * 1.2533F;
/// Share of a normal distribution within 1.5 standard deviations: what a step falls short by.
constexpr float WITHIN = 0.866F;

inline float Clip(float fValue, float fMost)
{
  const float fAbove = fValue > -fMost ? fValue : -fMost;
  return fAbove < fMost ? fAbove : fMost;
}

/// Sum of the distances from fMean, each at most fMost.
float SumClipped(const float *pValues, uint32_t nCount, float fMean, float fMost)
{
  // Sums side by side, which a compiler may keep in one vector.
  constexpr uint32_t SUMS = 8;
  std::array<float, SUMS> afSums{};
  uint32_t n = 0;
  for (; n + SUMS <= nCount; n += SUMS) {
    for (uint32_t i = 0; i < SUMS; ++i) {
      afSums[i] += Clip(pValues[n + i] - fMean, fMost);
    }
  }
  float fSum = 0;
  for (; n < nCount; ++n) {
    fSum += Clip(pValues[n] - fMean, fMost);
  }
  for (const float fPart : afSums) {
    fSum += fPart;
  }
  return fSum;
}

} // namespace

CTileProfiles::CTileProfiles(const CTile &tile) : m_tile(tile)
{
  float *pDetail = m_tile.GetSpare().pValues;
  double dSum = 0;
  for (uint32_t nLine = 0; nLine < m_tile.GetHeight(); ++nLine) {
    const float *pFine = m_tile.GetSmooth(0, nLine);
    const float *pWide = m_tile.GetSmooth(FINE_SCALES, nLine);
    float fSum = 0;
    for (uint32_t n = 0; n < m_tile.GetWidth(); ++n) {
      pDetail[n] = pFine[n] - pWide[n];
      fSum += pDetail[n] > 0 ? pDetail[n] : -pDetail[n];
    }
    dSum += double{fSum};
    pDetail += m_tile.GetWidth();
  }
  m_fReach = REACH * static_cast<float>(dSum / m_tile.GetWidth() / m_tile.GetHeight());
}

void CTileProfiles::AddUp(float *pColumns, float *pLines) const
{
  AddColumns(pColumns);
  AddLines(pLines);
}

/// Line by line, so that all columns go on together.
void CTileProfiles::AddColumns(float *pColumns) const
{
  const uint32_t nWidth = m_tile.GetWidth();
  const uint32_t nHeight = m_tile.GetHeight();
  std::array<float, TILE_SIDE> afMeans{};
  for (uint32_t nRound = 0; nRound <= ROUNDS; ++nRound) {
    // The first step is the plain mean.
    const float fMost = nRound == 0 ? 1e30F : m_fReach;
    const float fPerSample = 1 / (static_cast<float>(nHeight) * (nRound == 0 ? 1.0F : WITHIN));
    std::array<float, TILE_SIDE> afSteps{};
    const float *pDetail = m_tile.GetSpare().pValues;
    for (uint32_t nLine = 0; nLine < nHeight; ++nLine, pDetail += nWidth) {
      for (uint32_t n = 0; n < nWidth; ++n) {
        afSteps[n] += Clip(pDetail[n] - afMeans[n], fMost);
      }
    }
    for (uint32_t n = 0; n < nWidth; ++n) {
      afMeans[n] += afSteps[n] * fPerSample;
    }
  }
  for (uint32_t n = 0; n < nWidth; ++n) {
    pColumns[n] += afMeans[n] * static_cast<float>(nHeight);
  }
}

void CTileProfiles::AddLines(float *pLines) const
{
  const uint32_t nWidth = m_tile.GetWidth();
  const float *pDetail = m_tile.GetSpare().pValues;
  for (uint32_t nLine = 0; nLine < m_tile.GetHeight(); ++nLine, pDetail += nWidth) {
    float fMean = 0;
    for (uint32_t nRound = 0; nRound <= ROUNDS; ++nRound) {
      const float fMost = nRound == 0 ? 1e30F : m_fReach;
      fMean += SumClipped(pDetail, nWidth, fMean, fMost) / (static_cast<float>(nWidth) * (nRound == 0 ? 1.0F : WITHIN));
    }
    pLines[nLine] += fMean * static_cast<float>(nWidth);
  }
}

} // namespace ffc::reference
