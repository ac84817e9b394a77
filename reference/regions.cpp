#include "reference/regions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace ffc::reference {
namespace {

constexpr std::size_t LARGEST_COUNT = std::size_t{TILE_SIDE + 2 * TILE_HALO} * (TILE_SIDE + 2 * TILE_HALO);
/// How much of a scale's detail at a pixel is that pixel's own sample: squared centres of the smoothing kernels.
constexpr std::array<float, FINE_SCALES> OWN_SHARES = {0.8594F, 0.1111F, 0.0226F};
/// Radii of the windows, pixels, from round to round.
constexpr std::array<float, 2> RADII = {6.2F, 7.0F};
constexpr uint32_t REACH = 9;
/// Around an edge, pixels.
constexpr uint32_t MARGIN = 7;
/// Part of a tile with edges beyond which they are a pattern, and no dust; one part of so many.
constexpr std::size_t LARGEST_PART = 2;
/// Squared difference of two means, in units of twice their variance, from which on they belong to different regions.
constexpr float TOLERANCE = 10;
/// Weight of the finest detail, beyond that of the plain, from which on it belongs to an edge. What has no such detail
/// is smooth, and the scales are better at it.
constexpr float EDGE = 0.15F;
/// Of the total variation with which regions begin, in standard deviations of the noise, and samples that such a mean
/// is worth.
constexpr float VARIATION = 1.2F;
constexpr float FIRST_COUNT = 10;
/// Least part of the samples' variance that counts as noise.
constexpr float LEAST_NOISE = 0.05F;
/// Of the noise's standard deviation.
constexpr float PROBE = 0.1F;
/// Pixels of a line that are worked on together.
constexpr std::size_t LONGEST_RUN = 64;
/// Half the side of the window in which the two estimates are compared.
constexpr int32_t COMPARED = 6;

float GetSquare(float fValue)
{
  return fValue * fValue;
}

} // namespace

CRegions::CRegions()
  : m_listRemoved(LARGEST_COUNT), m_listFreedom(LARGEST_COUNT), m_listMeans(LARGEST_COUNT), m_listCounts(LARGEST_COUNT),
    m_listEdges(LARGEST_COUNT), m_listAbove(TILE_SIDE + 2 * TILE_HALO), m_listProbe(LARGEST_COUNT),
    m_variation(LARGEST_COUNT)
{
  m_listPixels.reserve(LARGEST_COUNT / LARGEST_PART);
  for (std::vector<float> *pList : {&m_listNoise, &m_listNext, &m_listNextCounts, &m_listProbeMeans}) {
    pList->reserve(LARGEST_COUNT / LARGEST_PART);
  }
}

void CRegions::Begin(const CTile &tile)
{
  m_nWidth = tile.GetWidth() + 2 * TILE_HALO;
  m_nHeight = tile.GetHeight() + 2 * TILE_HALO;
  const std::size_t nCount = std::size_t{m_nWidth} * m_nHeight;
  std::fill_n(m_listRemoved.begin(), nCount, 0.0F);
  std::fill_n(m_listFreedom.begin(), nCount, 1.0F);
}

void CRegions::RemoveScale(const CTile &tile, uint32_t nScale, const CShrinkage &shrinkage)
{
  const std::size_t nCount = std::size_t{m_nWidth} * m_nHeight;
  const float *pFine = tile.GetSmoothImage(nScale).pValues;
  const float *pWide = tile.GetSmoothImage(nScale + 1).pValues;
  const float *pEnergy = tile.GetEnergyImage().pValues;
  for (std::size_t n = 0; n < nCount; ++n) {
    const float fNoise = 1 - shrinkage.GetWeight(pEnergy[n]);
    m_listRemoved[n] += fNoise * (pFine[n] - pWide[n]);
    m_listFreedom[n] -= fNoise * OWN_SHARES[nScale];
  }
}

void CRegions::FindEdges(const CTile &tile, const CShrinkage &shrinkage, float fPlain)
{
  const std::size_t nCount = std::size_t{m_nWidth} * m_nHeight;
  const float *pEnergy = tile.GetEnergyImage().pValues;
  const float fEdge = fPlain + EDGE * (1 - fPlain);
  for (std::size_t n = 0; n < nCount; ++n) {
    m_listEdges[n] = shrinkage.GetWeight(pEnergy[n]) > fEdge ? 1 : 0;
  }
}

void CRegions::Refine(const CTile &tile, const SFieldNoise &stNoise, float fPlain)
{
  if (!FindPixels()) {
    return;
  }
  float *pSamples = tile.GetSmoothImage(0).pValues;
  const float *pLevel = tile.GetSmoothImage(FINE_SCALES).pValues;
  m_fPlain = fPlain;
  m_listNoise.clear();
  for (const uint32_t nPixel : m_listPixels) {
    m_listNoise.push_back(stNoise.At(pLevel[nPixel]));
  }
  // The pixels' own pattern spreads the samples of a region too.
  const float fNoise = std::accumulate(m_listNoise.begin(), m_listNoise.end(), 0.0F) /
                       static_cast<float>(m_listNoise.size()) / std::max(1 - fPlain, LEAST_NOISE);
  m_fVariation = VARIATION * std::sqrt(fNoise);
  m_listNext.resize(m_listPixels.size());
  m_listNextCounts.resize(m_listPixels.size());
  std::copy_n(pSamples, std::size_t{m_nWidth} * m_nHeight, m_listProbe.begin());
  for (std::size_t n = 0; n < m_listPixels.size(); ++n) {
    m_listProbe[m_listPixels[n]] += GetProbe(n);
  }
  FindMeans(pSamples, m_listProbe.data());
  m_listProbeMeans = m_listNext;
  FindMeans(pSamples, pSamples);
  Choose(pSamples);
}

/// \return whether there are any, and not everywhere
bool CRegions::FindPixels()
{
  m_listPixels.clear();
  const std::size_t nMost = std::size_t{m_nWidth} * m_nHeight / LARGEST_PART;
  for (uint32_t nY = REACH; nY + REACH < m_nHeight; ++nY) {
    for (uint32_t nX = 0; nX < m_nWidth; ++nX) {
      uint32_t nEdges = 0;
      for (uint32_t n = nY - MARGIN; n <= nY + MARGIN; ++n) {
        nEdges += m_listEdges[std::size_t{n} * m_nWidth + nX];
      }
      m_listAbove[nX] = nEdges;
    }
    for (uint32_t nX = REACH; nX + REACH < m_nWidth; ++nX) {
      const auto itFirst = m_listAbove.begin() + (nX - MARGIN);
      const auto itEnd = itFirst + std::ptrdiff_t{2} * MARGIN + 1;
      if (std::any_of(itFirst, itEnd, [](uint32_t nEdges) { return nEdges > 0; })) {
        if (m_listPixels.size() == nMost) {
          return false;
        }
        m_listPixels.push_back(nY * m_nWidth + nX);
      }
    }
  }
  return !m_listPixels.empty();
}

/// Small steps up and down, as by chance but always the same.
float CRegions::GetProbe(std::size_t nIndex) const
{
  uint32_t nHash = m_listPixels[nIndex] * 2654435761U;
  nHash = (nHash ^ nHash >> 15U) * 2246822519U;
  const float fStep = PROBE * std::sqrt(m_listNoise[nIndex]);
  return (nHash >> 16U & 1U) != 0 ? fStep : -fStep;
}

/// Begins with an image of few levels and short edges; pixels away from structures have what the scales say, and keep
/// it.
void CRegions::FindMeans(const float *pSamples, float *pProbed)
{
  m_variation.Smooth({pProbed, m_nWidth, m_nHeight}, m_fVariation, {m_listMeans.data(), m_nWidth, m_nHeight});
  for (std::size_t n = 0; n < m_listPixels.size(); ++n) {
    m_listNext[n] = m_listMeans[m_listPixels[n]];
    m_listNextCounts[n] = FIRST_COUNT;
  }
  for (std::size_t n = 0; n < std::size_t{m_nWidth} * m_nHeight; ++n) {
    m_listMeans[n] = pSamples[n] - m_listRemoved[n];
  }
  for (const float fRadius : RADII) {
    TakeMeans();
    GrowMeans(pProbed, fRadius);
  }
}

void CRegions::TakeMeans()
{
  for (std::size_t n = 0; n < m_listPixels.size(); ++n) {
    const uint32_t nPixel = m_listPixels[n];
    m_listMeans[nPixel] = m_listNext[n];
    // The pixels' own pattern spreads the samples of a region too.
    m_listCounts[nPixel] = m_listNextCounts[n] * (1 - m_fPlain) / (2 * TOLERANCE * m_listNoise[n]);
  }
}

void CRegions::GrowMeans(const float *pProbed, float fRadius)
{
  for (std::size_t nFirst = 0; nFirst < m_listPixels.size();) {
    std::size_t nCount = 1;
    while (nCount < LONGEST_RUN && nFirst + nCount < m_listPixels.size() &&
           m_listPixels[nFirst + nCount] == m_listPixels[nFirst] + nCount) {
      ++nCount;
    }
    GrowRun(pProbed, fRadius, nFirst, nCount);
    nFirst += nCount;
  }
}

/// Neighbours of one line side by side, in vectors.
void CRegions::GrowRun(const float *pProbed, float fRadius, std::size_t nFirst, std::size_t nCount)
{
  std::array<float, LONGEST_RUN> afSums{};
  std::array<float, LONGEST_RUN> afWeights{};
  std::array<float, LONGEST_RUN> afSquares{};
  const float *pMeans = m_listMeans.data() + m_listPixels[nFirst];
  const float *pCounts = m_listCounts.data() + m_listPixels[nFirst];
  const float *pSamples = pProbed + m_listPixels[nFirst];
  const auto nRadius = static_cast<int32_t>(fRadius);
  const float fPerSquare = 1 / GetSquare(fRadius);
  for (int32_t nY = -nRadius; nY <= nRadius; ++nY) {
    const auto nHalf = static_cast<int32_t>(std::sqrt(GetSquare(fRadius) - static_cast<float>(nY * nY)));
    for (int32_t nX = -nHalf; nX <= nHalf; ++nX) {
      const float fNear = 1 - static_cast<float>(nX * nX + nY * nY) * fPerSquare;
      const std::ptrdiff_t nOther = std::ptrdiff_t{nY} * m_nWidth + nX;
      for (std::size_t n = 0; n < nCount; ++n) {
        const float fApart = pMeans[n] - pMeans[static_cast<std::ptrdiff_t>(n) + nOther];
        const float fAlike = 2 - 2 * pCounts[n] * (fApart * fApart);
        const float fLimited = fAlike > 0 ? fAlike : 0.0F;
        const float fWeight = fNear * (fLimited < 1 ? fLimited : 1.0F);
        afSums[n] += fWeight * pSamples[static_cast<std::ptrdiff_t>(n) + nOther];
        afWeights[n] += fWeight;
        afSquares[n] += fWeight * fWeight;
      }
    }
  }
  for (std::size_t n = 0; n < nCount; ++n) {
    m_listNext[nFirst + n] = afSums[n] / afWeights[n];
    m_listNextCounts[nFirst + n] = afWeights[n] * afWeights[n] / afSquares[n];
  }
}

/// Takes the regions' estimate where its risk is the smaller one around a pixel: squared distance from the samples, and
/// twice the noise's variance for how far an estimate follows its own sample (Stein's unbiased estimate). Regions
/// follow it by what they are too, not by their weights alone: that is probed.
void CRegions::Choose(const float *pSamples)
{
  std::fill_n(m_listCounts.begin(), std::size_t{m_nWidth} * m_nHeight, 0.0F);
  for (std::size_t n = 0; n < m_listPixels.size(); ++n) {
    const uint32_t nPixel = m_listPixels[n];
    const float fFollowed = (m_listProbeMeans[n] - m_listNext[n]) / GetProbe(n);
    const float fOwn = fFollowed + m_fPlain * (1 - fFollowed);
    m_listNext[n] = (1 - m_fPlain) * (pSamples[nPixel] - m_listNext[n]);
    m_listCounts[nPixel] =
      GetSquare(m_listNext[n]) - GetSquare(m_listRemoved[nPixel]) + 2 * m_listNoise[n] * (fOwn - m_listFreedom[nPixel]);
  }
  for (std::size_t n = 0; n < m_listPixels.size(); ++n) {
    const uint32_t nPixel = m_listPixels[n];
    float fRisk = 0;
    for (int32_t nY = -COMPARED; nY <= COMPARED; ++nY) {
      const float *pRisks = m_listCounts.data() + (int64_t{nPixel} + int64_t{nY} * m_nWidth);
      for (int32_t nX = -COMPARED; nX <= COMPARED; ++nX) {
        fRisk += pRisks[nX];
      }
    }
    if (fRisk < 0) {
      m_listRemoved[nPixel] = m_listNext[n];
    }
  }
}

} // namespace ffc::reference
