#include "reference/lonepixels.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

namespace ffc::reference {
namespace {

/// Standard deviations of the noise from which on a pixel is one. Noise has one such pixel of 16000.
constexpr float FARTHEST = 4;
/// So many from all its neighbours but one: of an edge and of a line there are more alike, of a pair there is one.
constexpr float APART = 3.3F;
/// Part of the samples beyond which they are a pattern; one part of so many.
constexpr std::size_t LARGEST_PART = 50;
constexpr std::size_t NEIGHBOURS = 8;
constexpr std::array<float, 5> KERNEL = {1.0F / 16, 4.0F / 16, 6.0F / 16, 4.0F / 16, 1.0F / 16};
constexpr uint32_t REACH = 2;

float GetDistance(float fOne, float fOther)
{
  return fOne > fOther ? fOne - fOther : fOther - fOne;
}

using Neighbours = std::array<float, NEIGHBOURS>;

Neighbours GetNeighbours(const SImage &fine, const SLonePixel &stPixel)
{
  Neighbours afNeighbours{};
  std::size_t nCount = 0;
  for (uint32_t nLine = stPixel.nLine - 1; nLine <= stPixel.nLine + 1; ++nLine) {
    for (uint32_t n = stPixel.nColumn - 1; n <= stPixel.nColumn + 1; ++n) {
      if (n != stPixel.nColumn || nLine != stPixel.nLine) {
        afNeighbours[nCount++] = fine.GetLine(nLine)[n];
      }
    }
  }
  return afNeighbours;
}

/// Distance of the most alike neighbour but one.
float GetSecondDistance(const Neighbours &afNeighbours, float fSample)
{
  float fFirst = std::numeric_limits<float>::max();
  float fSecond = fFirst;
  for (const float fNeighbour : afNeighbours) {
    const float fDistance = GetDistance(fNeighbour, fSample);
    fSecond = std::min(fSecond, std::max(fFirst, fDistance));
    fFirst = std::min(fFirst, fDistance);
  }
  return fSecond;
}

/// Mean of all neighbours but the most alike one.
float GetMean(Neighbours afNeighbours, float fSample)
{
  std::sort(afNeighbours.begin(), afNeighbours.end(),
            [fSample](float fOne, float fOther) { return GetDistance(fOne, fSample) > GetDistance(fOther, fSample); });
  return std::accumulate(afNeighbours.begin(), afNeighbours.end() - 1, 0.0F) / (NEIGHBOURS - 1);
}

/// What the smoothing makes of a change of one sample.
void ChangeSmooth(const SImage &wide, const SLonePixel &stPixel, float fChange)
{
  const uint32_t nEnd = std::min(stPixel.nColumn + REACH + 1, wide.nWidth);
  for (uint32_t nLine = stPixel.nLine - std::min(stPixel.nLine, REACH);
       nLine < std::min(stPixel.nLine + REACH + 1, wide.nHeight); ++nLine) {
    const float fLine = fChange * KERNEL[nLine + REACH - stPixel.nLine];
    float *pLine = wide.GetLine(nLine);
    for (uint32_t n = stPixel.nColumn - std::min(stPixel.nColumn, REACH); n < nEnd; ++n) {
      pLine[n] += fLine * KERNEL[n + REACH - stPixel.nColumn];
    }
  }
}

} // namespace

CLonePixels::CLonePixels(std::size_t nLargest) : m_fGain(static_cast<float>(GetScaleStatistics(1).front().dGain))
{
  m_listPixels.reserve(nLargest / LARGEST_PART + 1);
}

void CLonePixels::TakeOut(const SImage &fine, const SImage &wide, const SFieldNoise &stNoise)
{
  m_listPixels.clear();
  if (!FindOutliers(fine, wide, stNoise)) {
    m_listPixels.clear();
    return;
  }
  // All are judged by the samples as they are.
  m_listPixels.erase(std::remove_if(m_listPixels.begin(), m_listPixels.end(),
                                    [&](const SLonePixel &stPixel) {
                                      const float fNoise = stNoise.At(wide.GetLine(stPixel.nLine)[stPixel.nColumn]);
                                      const float fApart =
                                        GetSecondDistance(GetNeighbours(fine, stPixel), stPixel.fSample);
                                      return fApart * fApart < APART * APART * fNoise;
                                    }),
                     m_listPixels.end());
  for (const SLonePixel &stPixel : m_listPixels) {
    const float fMean = GetMean(GetNeighbours(fine, stPixel), stPixel.fSample);
    fine.GetLine(stPixel.nLine)[stPixel.nColumn] = fMean;
    ChangeSmooth(wide, stPixel, fMean - stPixel.fSample);
  }
}

/// Not on the outermost samples, which have no neighbours all around.
/// \return whether there are not too many
bool CLonePixels::FindOutliers(const SImage &fine, const SImage &wide, const SFieldNoise &stNoise)
{
  const std::size_t nMost = fine.GetCount() / LARGEST_PART;
  const float fConstant = FARTHEST * FARTHEST * m_fGain * stNoise.fConstant;
  const float fPerLevel = FARTHEST * FARTHEST * m_fGain * stNoise.fPerLevel;
  for (uint32_t nLine = 1; nLine + 1 < fine.nHeight; ++nLine) {
    const float *pFine = fine.GetLine(nLine);
    const float *pWide = wide.GetLine(nLine);
    const auto fnIsOutlier = [&](uint32_t n) {
      const float fDetail = pFine[n] - pWide[n];
      const float fLevel = pWide[n] > 0 ? pWide[n] : 0.0F;
      return fDetail * fDetail > fConstant + fPerLevel * fLevel;
    };
    // Most lines have none, which vectors find out.
    uint32_t nFound = 0;
    for (uint32_t n = 1; n + 1 < fine.nWidth; ++n) {
      nFound += fnIsOutlier(n) ? 1U : 0U;
    }
    for (uint32_t n = 1; nFound > 0; ++n) {
      if (fnIsOutlier(n)) {
        if (m_listPixels.size() == nMost) {
          return false;
        }
        m_listPixels.push_back({n, nLine, pFine[n]});
        --nFound;
      }
    }
  }
  return true;
}

} // namespace ffc::reference
