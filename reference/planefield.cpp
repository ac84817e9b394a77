#include "reference/planefield.h"

#include <algorithm>
#include <memory>

#include "reference/parallel.h"
#include "reference/tileprofiles.h"

namespace ffc::reference {
namespace {

/// Tiles that are enough to learn from.
constexpr uint32_t LEARNT_TILES = 32;

uint32_t CountScales(const SPlane &stPlane)
{
  uint32_t nScales = FINE_SCALES;
  while ((uint64_t{2} << nScales) < std::min(stPlane.nWidth, stPlane.nHeight)) {
    ++nScales;
  }
  return nScales;
}

uint32_t Divide(uint32_t nValue, uint32_t nBy)
{
  return (nValue + nBy - 1) / nBy;
}

} // namespace

CPlaneField::CPlaneField(const CPlaneSource &source, const SFieldNoise &stNoise, uint32_t nThreads)
  : m_source(source), m_stNoise(stNoise), m_stGrid(source.GetPlane()),
    m_nThreads(std::clamp(nThreads, 1U, std::min(MAX_THREADS, m_stGrid.GetCount()))), m_listTiles(m_nThreads),
    m_listScales(GetScaleStatistics(CountScales(source.GetPlane()))),
    m_nCoarseWidth(Divide(source.GetPlane().nWidth, COARSE_STEP)),
    m_nCoarseHeight(Divide(source.GetPlane().nHeight, COARSE_STEP)),
    m_listCoarse(static_cast<std::size_t>(m_nCoarseWidth) * m_nCoarseHeight)
{
  m_stProfiles.Prepare(source.GetPlane().nWidth, source.GetPlane().nHeight, TILE_SIDE);
}

void CPlaneField::FindProfiles()
{
  ForEachItem(m_stGrid.GetCount(), m_nThreads, [this](uint32_t nItem, uint32_t nWorker) {
    CTile &tile = m_listTiles[nWorker];
    tile.Load(m_source, nItem, nullptr, &m_stNoise);
    CollectTile(tile);
  });
  double dSum = 0;
  for (const float fValue : m_listCoarse) {
    dSum += double{fValue};
  }
  m_dMean = dSum / static_cast<double>(m_listCoarse.size());
  WeightProfiles(m_stProfiles, double{m_stNoise.At(static_cast<float>(m_dMean))}, double{m_stNoise.fLine});
}

void CPlaneField::CollectTile(CTile &tile)
{
  const uint32_t nX = tile.GetFirstColumn();
  const uint32_t nY = tile.GetFirstLine();
  CTileProfiles(tile).AddUp(m_stProfiles.GetColumns(nY / TILE_SIDE) + nX, m_stProfiles.GetLines(nX / TILE_SIDE) + nY);
  for (uint32_t nLine = 0; nLine < tile.GetHeight(); nLine += COARSE_STEP) {
    const float *pWide = tile.GetSmooth(FINE_SCALES, nLine);
    float *pCoarse = m_listCoarse.data() + static_cast<std::size_t>((nY + nLine) / COARSE_STEP) * m_nCoarseWidth;
    for (uint32_t n = 0; n < tile.GetWidth(); n += COARSE_STEP) {
      pCoarse[(nX + n) / COARSE_STEP] = pWide[n];
    }
  }
}

void CPlaneField::WeightCoarseScales()
{
  const std::size_t nCount = m_listCoarse.size();
  const std::size_t nWidestStep = (std::size_t{1} << (m_listScales.size() - 1)) / COARSE_STEP;
  std::vector<float> listMemory(nCount * 3 + m_nCoarseWidth + 4 * nWidestStep);
  const auto fnImage = [&](float *pValues) { return SImage{pValues, m_nCoarseWidth, m_nCoarseHeight}; };
  SImage fine = fnImage(listMemory.data());
  SImage wide = fnImage(listMemory.data() + nCount);
  const SImage spare = fnImage(listMemory.data() + 2 * nCount);
  std::copy(m_listCoarse.begin(), m_listCoarse.end(), fine.pValues);
  std::fill(m_listCoarse.begin(), m_listCoarse.end(), 0.0F);
  for (uint32_t nScale = FINE_SCALES; nScale < m_listScales.size(); ++nScale) {
    WeightCoarseScale(nScale, fine, wide, spare, listMemory.data() + 3 * nCount);
  }
}

void CPlaneField::WeightCoarseScale(uint32_t nScale, SImage &fine, SImage &wide, const SImage &spare, float *pLine)
{
  const uint32_t nStep = (1U << nScale) / COARSE_STEP;
  const std::size_t nCount = fine.GetCount();
  Smooth(fine, wide, nStep, pLine);
  // What is fine becomes detail; its squares stand where the energy is made of them.
  for (std::size_t n = 0; n < nCount; ++n) {
    fine.pValues[n] -= wide.pValues[n];
  }
  std::vector<float> listEnergy(nCount);
  const SImage energy = {listEnergy.data(), fine.nWidth, fine.nHeight};
  for (std::size_t n = 0; n < nCount; ++n) {
    spare.pValues[n] = fine.pValues[n] * fine.pValues[n];
  }
  Smooth(spare, energy, nStep, pLine);
  auto pHistogram = std::make_unique<CShrinkage::Histogram>();
  const auto fGain = static_cast<float>(m_listScales[nScale].dGain);
  for (std::size_t n = 0; n < nCount; ++n) {
    energy.pValues[n] /= fGain * m_stNoise.At(wide.pValues[n]);
    ++(*pHistogram)[CShrinkage::GetBin(energy.pValues[n])];
  }
  auto pShrinkage = std::make_unique<CShrinkage>();
  pShrinkage->Learn(*pHistogram, m_listScales[nScale].dFreedom);
  for (std::size_t n = 0; n < nCount; ++n) {
    m_listCoarse[n] += (1 - pShrinkage->GetWeight(energy.pValues[n])) * fine.pValues[n];
  }
  std::swap(fine, wide);
}

void CPlaneField::LearnFineScales()
{
  using Histograms = std::array<CShrinkage::Histogram, FINE_SCALES>;
  std::vector<Histograms> listHistograms(m_nThreads);
  const uint32_t nTiles = std::min(m_stGrid.GetCount(), LEARNT_TILES);
  ForEachItem(nTiles, m_nThreads, [&](uint32_t nItem, uint32_t nWorker) {
    CTile &tile = m_listTiles[nWorker];
    const auto nTile = static_cast<uint32_t>(uint64_t{nItem} * m_stGrid.GetCount() / nTiles);
    tile.Load(m_source, nTile, &m_stProfiles, &m_stNoise);
    for (uint32_t nScale = 0; nScale < FINE_SCALES; ++nScale) {
      tile.ComputeEnergy(nScale, m_listScales[nScale].dGain, m_stNoise);
      for (uint32_t nLine = 0; nLine < tile.GetHeight(); ++nLine) {
        const float *pEnergy = tile.GetEnergy(nLine);
        for (uint32_t n = 0; n < tile.GetWidth(); ++n) {
          ++listHistograms[nWorker][nScale][CShrinkage::GetBin(pEnergy[n])];
        }
      }
    }
  });
  for (uint32_t nScale = 0; nScale < FINE_SCALES; ++nScale) {
    CShrinkage::Histogram &aSum = listHistograms[0][nScale];
    for (uint32_t nWorker = 1; nWorker < m_nThreads; ++nWorker) {
      for (uint32_t nBin = 0; nBin < CShrinkage::BINS; ++nBin) {
        aSum[nBin] += listHistograms[nWorker][nScale][nBin];
      }
    }
    m_aShrinkage[nScale].Learn(aSum, m_listScales[nScale].dFreedom);
  }
  m_dDetailWeight = m_aShrinkage[0].GetMeanWeight(listHistograms[0][0]);
}

void CPlaneField::Write(const SFieldTarget &stTarget)
{
  std::vector<CRegions> listRegions(m_nThreads);
  ForEachItem(m_stGrid.GetCount(), m_nThreads, [&](uint32_t nItem, uint32_t nWorker) {
    m_listTiles[nWorker].Load(m_source, nItem, &m_stProfiles, &m_stNoise);
    WriteTile(m_listTiles[nWorker], stTarget, listRegions[nWorker]);
  });
}

void CPlaneField::WriteTile(CTile &tile, const SFieldTarget &stTarget, CRegions &regions)
{
  const auto fPlain = static_cast<float>(m_dDetailWeight);
  regions.Begin(tile);
  for (uint32_t nScale = 0; nScale < FINE_SCALES; ++nScale) {
    tile.ComputeEnergy(nScale, m_listScales[nScale].dGain, m_stNoise);
    regions.RemoveScale(tile, nScale, m_aShrinkage[nScale]);
    if (nScale == 0) {
      regions.FindEdges(tile, m_aShrinkage[0], fPlain);
    }
  }
  regions.Refine(tile, m_stNoise, fPlain);
  for (uint32_t nLine = 0; nLine < tile.GetHeight(); ++nLine) {
    float *pRemoved = regions.GetRemoved(nLine);
    AddCoarse(tile.GetFirstLine() + nLine, tile.GetFirstColumn(), tile.GetWidth(), pRemoved);
  }
  KeepLonePixels(tile, regions);
  for (uint32_t nLine = 0; nLine < tile.GetHeight(); ++nLine) {
    const float *pRemoved = regions.GetRemoved(nLine);
    WriteLine(tile, nLine, stTarget, pRemoved);
  }
}

/// These have what the average has.
void CPlaneField::KeepLonePixels(const CTile &tile, CRegions &regions)
{
  for (const SLonePixel &stPixel : tile.GetLonePixels()) {
    const uint32_t nLine = stPixel.nLine - TILE_HALO;
    const uint32_t nColumn = stPixel.nColumn - TILE_HALO;
    if (nLine < tile.GetHeight() && nColumn < tile.GetWidth()) {
      regions.GetRemoved(nLine)[nColumn] = tile.GetSmooth(0, nLine)[nColumn] - stPixel.fSample;
    }
  }
}

/// Between the samples of the coarse image, on straight lines.
void CPlaneField::AddCoarse(uint32_t nLine, uint32_t nFirst, uint32_t nCount, float *pRemoved) const
{
  const uint32_t nUpper = nLine / COARSE_STEP;
  const uint32_t nLower = std::min(nUpper + 1, m_nCoarseHeight - 1);
  const float fDown = static_cast<float>(nLine % COARSE_STEP) / COARSE_STEP;
  const float *pUpper = m_listCoarse.data() + static_cast<std::size_t>(nUpper) * m_nCoarseWidth;
  const float *pLower = m_listCoarse.data() + static_cast<std::size_t>(nLower) * m_nCoarseWidth;
  const auto fnValue = [&](uint32_t n) { return pUpper[n] + fDown * (pLower[n] - pUpper[n]); };
  for (uint32_t n = 0; n < nCount; n += COARSE_STEP) {
    const uint32_t nLeft = (nFirst + n) / COARSE_STEP;
    const float fLeft = fnValue(nLeft);
    const float fSlope = (fnValue(std::min(nLeft + 1, m_nCoarseWidth - 1)) - fLeft) / COARSE_STEP;
    for (uint32_t i = 0; i < COARSE_STEP && n + i < nCount; ++i) {
      pRemoved[n + i] += fLeft + static_cast<float>(i) * fSlope;
    }
  }
}

void CPlaneField::WriteLine(const CTile &tile, uint32_t nLine, const SFieldTarget &stTarget,
                            const float *pRemoved) const
{
  const SPlane &stPlane = m_source.GetPlane();
  const uint32_t nX = tile.GetFirstColumn();
  const uint32_t nY = tile.GetFirstLine() + nLine;
  const float *pColumns = m_stProfiles.GetColumns(nY / TILE_SIDE) + nX;
  const float fProfile = m_stProfiles.GetLines(nX / TILE_SIDE)[nY];
  const float *pSamples = tile.GetSmooth(0, nLine);
  const std::size_t nBegin = stPlane.GetIndex(nX, nY);
  for (uint32_t n = 0; n < tile.GetWidth(); ++n) {
    const std::size_t nIndex = nBegin + std::size_t{n} * stPlane.nStep;
    const float fField = pSamples[n] + pColumns[n] + fProfile - pRemoved[n];
    const float fDark = stTarget.pDark == nullptr ? 0.0F : static_cast<float>(stTarget.pDark[nIndex]);
    const float fValue = fField * stTarget.fScale + fDark + 0.5F;
    stTarget.pValues[nIndex] = static_cast<uint16_t>(std::min(std::max(0.0F, fValue), 65535.0F));
  }
}

} // namespace ffc::reference
