#include "reference/regions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "reference/kernels/referencekernels.h"

namespace ffc::reference {
namespace {

constexpr uint32_t LARGEST_SIDE = TILE_SIDE + 2 * TILE_HALO;
constexpr std::size_t LARGEST_COUNT = std::size_t{LARGEST_SIDE} * LARGEST_SIDE;
constexpr std::size_t BOX_REACH = CEdgePixels::BOX_SIDE + 2 * CTotalVariation::REACH;
/// How much of a scale's detail at a pixel is that pixel's own sample: squared centres of the smoothing kernels.
constexpr std::array<float, FINE_SCALES> OWN_SHARES = {0.8594F, 0.1111F, 0.0226F};
/// Radii of the windows, pixels, from round to round.
constexpr std::array<float, 2> RADII = {6.2F, 7.0F};
// What is read around a pixel, with some lanes beyond a run, lies in the image.
static_assert(RADII.back() < CEdgePixels::REACH && SUMMED_REACH < CEdgePixels::REACH);
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

float GetSquare(float fValue)
{
  return fValue * fValue;
}

/// A round window, whose pixels count the less the farther they are.
struct SWindow {
  static constexpr std::size_t SIDE = 2 * static_cast<std::size_t>(RADII.back()) + 1;

  std::array<SWindowPixel, SIDE * SIDE> aPixels;
  std::size_t nPixels = 0;

  /// \param nWidth of the image
  SWindow(float fRadius, uint32_t nWidth)
  {
    const auto nRadius = static_cast<int32_t>(fRadius);
    const float fPerSquare = 1 / GetSquare(fRadius);
    for (int32_t nY = -nRadius; nY <= nRadius; ++nY) {
      const auto nHalf = static_cast<int32_t>(std::sqrt(GetSquare(fRadius) - static_cast<float>(nY * nY)));
      for (int32_t nX = -nHalf; nX <= nHalf; ++nX) {
        aPixels[nPixels++] = {std::ptrdiff_t{nY} * nWidth + nX, 1 - static_cast<float>(nX * nX + nY * nY) * fPerSquare};
      }
    }
  }
};

} // namespace

CRegions::CRegions()
  : m_listRemoved(LARGEST_COUNT), m_listFreedom(LARGEST_COUNT), m_listMeans(LARGEST_COUNT), m_listCounts(LARGEST_COUNT),
    m_edges(LARGEST_SIDE), m_listProbe(LARGEST_COUNT), m_variation(BOX_REACH * BOX_REACH)
{
  for (std::vector<float> *pList : {&m_listNoise, &m_listNext, &m_listNextCounts, &m_listProbeMeans}) {
    pList->reserve(m_edges.GetMost());
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
  const float fEdge = shrinkage.FindEnergy(fPlain + EDGE * (1 - fPlain));
  uint8_t *pMarks = m_edges.GetMarks();
  for (std::size_t n = 0; n < nCount; ++n) {
    pMarks[n] = pEnergy[n] >= fEdge ? 1 : 0;
  }
}

void CRegions::Refine(const CTile &tile, const SFieldNoise &stNoise, float fPlain)
{
  if (!m_edges.Find(m_nWidth, m_nHeight)) {
    return;
  }
  const std::vector<uint32_t> &listPixels = m_edges.GetAll();
  float *pSamples = tile.GetSmoothImage(0).pValues;
  const float *pLevel = tile.GetSmoothImage(FINE_SCALES).pValues;
  m_fPlain = fPlain;
  m_listNoise.clear();
  for (const uint32_t nPixel : listPixels) {
    m_listNoise.push_back(stNoise.At(pLevel[nPixel]));
  }
  // The pixels' own pattern spreads the samples of a region too.
  const float fNoise = std::accumulate(m_listNoise.begin(), m_listNoise.end(), 0.0F) /
                       static_cast<float>(m_listNoise.size()) / std::max(1 - fPlain, LEAST_NOISE);
  m_fVariation = VARIATION * std::sqrt(fNoise);
  m_listNext.resize(listPixels.size());
  m_listNextCounts.resize(listPixels.size());
  std::copy_n(pSamples, std::size_t{m_nWidth} * m_nHeight, m_listProbe.begin());
  for (std::size_t n = 0; n < listPixels.size(); ++n) {
    m_listProbe[listPixels[n]] += GetProbe(n);
  }
  FindMeans(pSamples, m_listProbe.data());
  m_listProbeMeans = m_listNext;
  FindMeans(pSamples, pSamples);
  FindRisks(pSamples);
  m_edges.ForEachRun([this](std::size_t nFirst, std::size_t nCount) { Choose(nFirst, nCount); });
}

/// Small steps up and down, as by chance but always the same.
float CRegions::GetProbe(std::size_t nIndex) const
{
  uint32_t nHash = m_edges.GetAll()[nIndex] * 2654435761U;
  nHash = (nHash ^ nHash >> 15U) * 2246822519U;
  const float fStep = PROBE * std::sqrt(m_listNoise[nIndex]);
  return (nHash >> 16U & 1U) != 0 ? fStep : -fStep;
}

/// Begins with an image of few levels and short edges; pixels away from structures have what the scales say, and keep
/// it.
void CRegions::FindMeans(const float *pSamples, float *pProbed)
{
  m_edges.ForEachBox([&](const SBox &stBox) {
    m_variation.Smooth({pProbed, m_nWidth, m_nHeight}, stBox, m_fVariation, {m_listMeans.data(), m_nWidth, m_nHeight});
  });
  const std::vector<uint32_t> &listPixels = m_edges.GetAll();
  for (std::size_t n = 0; n < listPixels.size(); ++n) {
    m_listNext[n] = m_listMeans[listPixels[n]];
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
  const std::vector<uint32_t> &listPixels = m_edges.GetAll();
  for (std::size_t n = 0; n < listPixels.size(); ++n) {
    m_listMeans[listPixels[n]] = m_listNext[n];
    // The pixels' own pattern spreads the samples of a region too.
    m_listCounts[listPixels[n]] = m_listNextCounts[n] * (1 - m_fPlain) / (2 * TOLERANCE * m_listNoise[n]);
  }
}

void CRegions::GrowMeans(const float *pProbed, float fRadius)
{
  const SWindow stWindow(fRadius, m_nWidth);
  m_edges.ForEachRun([&](std::size_t nFirst, std::size_t nCount) {
    const uint32_t nPixel = m_edges.GetAll()[nFirst];
    const SRegionRun stRun = {m_listMeans.data() + nPixel, m_listCounts.data() + nPixel, pProbed + nPixel, nCount};
    GetReferenceKernels().fnGrowRun(stRun, stWindow.aPixels.data(), stWindow.nPixels, m_listNext.data() + nFirst,
                                    m_listNextCounts.data() + nFirst);
  });
}

/// How much more risk there is in the regions' estimate: squared distance from the samples, and twice the noise's
/// variance for how far an estimate follows its own sample (Stein's unbiased estimate). Regions follow it by what they
/// are too, not by their weights alone: that is probed.
void CRegions::FindRisks(const float *pSamples)
{
  std::fill_n(m_listCounts.begin(), std::size_t{m_nWidth} * m_nHeight, 0.0F);
  const std::vector<uint32_t> &listPixels = m_edges.GetAll();
  for (std::size_t n = 0; n < listPixels.size(); ++n) {
    const uint32_t nPixel = listPixels[n];
    const float fFollowed = (m_listProbeMeans[n] - m_listNext[n]) / GetProbe(n);
    const float fOwn = fFollowed + m_fPlain * (1 - fFollowed);
    m_listNext[n] = (1 - m_fPlain) * (pSamples[nPixel] - m_listNext[n]);
    m_listCounts[nPixel] =
      GetSquare(m_listNext[n]) - GetSquare(m_listRemoved[nPixel]) + 2 * m_listNoise[n] * (fOwn - m_listFreedom[nPixel]);
  }
}

/// Takes the regions' estimate where its risk is the smaller one around a pixel.
void CRegions::Choose(std::size_t nFirst, std::size_t nCount)
{
  const uint32_t nPixel = m_edges.GetAll()[nFirst];
  std::array<float, CEdgePixels::LONGEST_RUN> afRisks{};
  GetReferenceKernels().fnSumSquares(m_listCounts.data() + nPixel, nCount, m_nWidth, afRisks.data());
  for (std::size_t n = 0; n < nCount; ++n) {
    if (afRisks[n] < 0) {
      m_listRemoved[nPixel + n] = m_listNext[nFirst + n];
    }
  }
}

} // namespace ffc::reference
